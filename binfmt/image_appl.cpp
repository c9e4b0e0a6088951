/*
** image_appl.cpp - the application record store: a root table of type
** rows, each a table of records. Tables grow on demand; their slot counts
** say how far they are used, their capacities grow by doubling so that
** filling a table costs linear time.
*/
#include "binfmt/image_appl.h"

#include <cstring>

#include "binfmt/image_internal.h"
#include "core/alloc.h"

appl_root *image_root = nullptr;

namespace {

constexpr int32_t max_index = 0xFFFE; /* 0xFFFF is the block's end mark */

uint8_t payload_sum(const uint8_t *payload, int32_t length) {
    int32_t sum = 0;
    for (int32_t i = 0; i < length; i++)
        sum += static_cast<int8_t>(payload[i]);
    return static_cast<uint8_t>(sum);
}

/* Grows a pointer table to hold index; false when memory fails. */
bool table_reach(void ***table, int32_t *capacity, int32_t index) {
    if (index < *capacity)
        return true;
    int32_t wanted = *capacity > 0 ? *capacity : 4;
    while (wanted <= index)
        wanted *= 2;
    void **grown = static_cast<void **>(lmalloc(static_cast<size_t>(wanted) * sizeof(void *)));
    if (!grown)
        return false;
    std::memset(grown, 0, static_cast<size_t>(wanted) * sizeof(void *));
    if (*table) {
        std::memcpy(grown, *table, static_cast<size_t>(*capacity) * sizeof(void *));
        lfree(*table);
    }
    *table = grown;
    *capacity = wanted;
    return true;
}

appl_type_row *row_of(int32_t type, int32_t *status) {
    if (!image_live() || !image_root || type < 0 || type >= image_root->slots) {
        *status = IMAGE_BEYOND_TABLE;
        return nullptr;
    }
    appl_type_row *row = image_root->rows[type];
    *status = row ? 0 : IMAGE_NO_RECORD;
    return row;
}

uint8_t *record_of(int32_t type, int32_t instance, int32_t *status) {
    appl_type_row *row = row_of(type, status);
    if (!row)
        return nullptr;
    if (instance < 0 || instance >= row->slots) {
        *status = IMAGE_BEYOND_TABLE;
        return nullptr;
    }
    uint8_t *record = row->records[instance];
    *status = record ? 0 : IMAGE_NO_RECORD;
    return record;
}

/* Puts a record at its place, growing root and row as needed. The old
   record there, if any, is the caller's to free. */
int32_t appl_store(int32_t type, int32_t instance, uint8_t *record) {
    if (!image_root) {
        image_root = static_cast<appl_root *>(lmalloc(sizeof(appl_root)));
        if (!image_root)
            return IMAGE_STORE_FAILED;
        std::memset(image_root, 0, sizeof(appl_root));
    }
    appl_root *root = image_root;
    if (!table_reach(reinterpret_cast<void ***>(&root->rows), &root->capacity, type))
        return IMAGE_STORE_FAILED;
    appl_type_row *row = root->rows[type];
    if (!row) {
        row = static_cast<appl_type_row *>(lmalloc(sizeof(appl_type_row)));
        if (!row)
            return IMAGE_STORE_FAILED;
        std::memset(row, 0, sizeof(appl_type_row));
    }
    if (!table_reach(reinterpret_cast<void ***>(&row->records), &row->capacity, instance)) {
        if (!root->rows[type])
            lfree(row);
        return IMAGE_STORE_FAILED;
    }
    if (!root->rows[type]) {
        root->rows[type] = row;
        root->in_use++;
    }
    if (type >= root->slots)
        root->slots = static_cast<uint16_t>(type + 1);
    if (instance >= row->slots)
        row->slots = static_cast<uint16_t>(instance + 1);
    row->records[instance] = record;
    return 0;
}

} // namespace

void image_appl_reset() { image_root = nullptr; }

int32_t appl_find(const char * /*program*/, const char *name, int32_t name_length,
                  int32_t *type, int32_t *instance) {
    appl_root *root = image_live() ? image_root : nullptr;
    int32_t slots = root ? root->slots : 0;
    if (!name || name_length <= 0) {
        int32_t t = 0;
        while (t < slots && root->rows[t])
            t++;
        if (type)
            *type = t;
        if (instance)
            *instance = 0;
        return 0;
    }
    for (int32_t t = 0; t < slots; t++) {
        appl_type_row *row = root->rows[t];
        if (!row || row->slots == 0 || !row->records[0])
            continue;
        const uint8_t *label = row->records[0];
        if (label[0] < name_length || std::memcmp(label + 2, name, static_cast<size_t>(name_length)) != 0)
            continue;
        if (type)
            *type = t;
        if (instance)
            *instance = 0;
        return 0;
    }
    return IMAGE_NO_SUCH_NAME;
}

int32_t appl_type_count(int32_t *count) {
    if (count)
        *count = image_live() && image_root ? image_root->slots : 0;
    return 0;
}

int32_t appl_instance_count(int32_t type, int32_t *count) {
    int32_t status = 0;
    appl_type_row *row = row_of(type, &status);
    if (!row)
        return status;
    if (count)
        *count = row->slots;
    return 0;
}

int32_t appl_read(int32_t type, int32_t instance, uint8_t *buffer, int32_t size) {
    int32_t status = 0;
    const uint8_t *record = record_of(type, instance, &status);
    if (!record)
        return status;
    int32_t length = record[0];
    if (!buffer || size < length + 1)
        return IMAGE_BUFFER_SHORT;
    if (payload_sum(record + 2, length) != record[1])
        return IMAGE_BAD_SUM;
    buffer[0] = record[0];
    std::memcpy(buffer + 1, record + 2, static_cast<size_t>(length));
    return 0;
}

int32_t appl_write(int32_t type, int32_t instance, const uint8_t *data, int32_t length, int32_t mode) {
    if (type < 0 || type > max_index || instance < 0 || instance > max_index ||
        length < 0 || length > TP_APPL_RECORD_MAX)
        return IMAGE_BEYOND_TABLE;
    if (!image_ensure())
        return IMAGE_STORE_FAILED;
    void *block = nullptr;
    if (lzalloc(&block, static_cast<size_t>(length) + 2) != 0)
        return IMAGE_STORE_FAILED;
    uint8_t *fresh = static_cast<uint8_t *>(block);
    fresh[0] = static_cast<uint8_t>(length);
    if (data && length > 0)
        std::memcpy(fresh + 2, data, static_cast<size_t>(length));
    fresh[1] = payload_sum(fresh + 2, length);
    if (mode & APPL_MODE_DRY) {
        lfree(fresh);
        return 0;
    }

    int32_t status = 0;
    uint8_t *old = record_of(type, instance, &status);
    int32_t how = mode & APPL_MODE_EITHER;
    bool overwrite;
    if (how == APPL_MODE_REPLACE) {
        overwrite = false;
    } else if (how == APPL_MODE_OVERWRITE) {
        status = !old ? IMAGE_NO_RECORD : old[0] != length ? IMAGE_BAD_MODE : 0;
        if (status) {
            lfree(fresh);
            return status;
        }
        overwrite = true;
    } else if (how == APPL_MODE_EITHER) {
        overwrite = old && old[0] == length;
    } else {
        lfree(fresh);
        return IMAGE_BAD_MODE;
    }

    if (overwrite) {
        std::memcpy(old, fresh, static_cast<size_t>(length) + 2);
        lfree(fresh);
        return 0;
    }
    status = appl_store(type, instance, fresh);
    if (status) {
        lfree(fresh);
        return status;
    }
    appl_type_row *row = image_root->rows[type];
    if (old)
        lfree(old);
    else
        row->in_use++;
    return 0;
}
