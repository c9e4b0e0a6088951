/*
** config_models.cpp - lookups in the robot model table and its linear-axis
** table, and the rows a host adds at run time (addrobotconfig). Added rows
** take untracked memory that lasts as long as the process.
*/
#include "core/config.h"

#include <cstdlib>
#include <cstring>

namespace {

bool row_is_end(const robot_model &m) { return !m.key || !m.key[0]; }

char *copy_text(const char *text) {
    size_t n = std::strlen(text) + 1;
    char *copy = static_cast<char *>(std::malloc(n));
    if (copy)
        std::memcpy(copy, text, n);
    return copy;
}

void copy_out(char *out, const char *text) {
    if (!out)
        return;
    size_t n = text ? std::strlen(text) : 0;
    if (n > 511)
        n = 511;
    if (n)
        std::memcpy(out, text, n);
    out[n] = 0;
}

int32_t first_linear_end() {
    for (int32_t i = 0; i < ROBOT_LINEAR_CAPACITY; i++)
        if (!robot_linear_axes[i].key[0])
            return i;
    return ROBOT_LINEAR_CAPACITY;
}

/* Adds the linear-axis row of a new model; 0 when the table is full. */
int32_t add_linear_row(const char *key, const char *axis_letters) {
    int32_t i = first_linear_end();
    if (i + 1 >= ROBOT_LINEAR_CAPACITY)
        return 0;
    robot_linear_row &row = robot_linear_axes[i];
    std::memset(&row, 0, sizeof row);
    size_t n = std::strlen(key);
    std::memcpy(row.key, key, n < ROBOT_LINEAR_KEY_MAX ? n : ROBOT_LINEAR_KEY_MAX);
    for (int32_t k = 0; k < ROBOT_LINEAR_FLAGS && axis_letters[k]; k++)
        row.linear[k] = axis_letters[k] == 'L';
    std::memset(&robot_linear_axes[i + 1], 0, sizeof row);
    return 1;
}

} // namespace

int32_t robot_model_find(const char *key) {
    if (!key || !key[0])
        return -1;
    for (int32_t i = 0; i < ROBOT_MODEL_CAPACITY && !row_is_end(robot_models[i]); i++)
        if (std::strcmp(robot_models[i].key, key) == 0)
            return i;
    return -1;
}

const robot_linear_row *robot_linear_find(const char *key) {
    if (!key || !key[0])
        return nullptr;
    for (int32_t i = 0; i < ROBOT_LINEAR_CAPACITY && robot_linear_axes[i].key[0]; i++)
        if (std::strncmp(robot_linear_axes[i].key, key, sizeof robot_linear_axes[i].key) == 0)
            return &robot_linear_axes[i];
    return nullptr;
}

int32_t robot_model_count(uint16_t *count) {
    int32_t limit = ROBOT_MODEL_SCAN_LIMIT < ROBOT_MODEL_CAPACITY ? ROBOT_MODEL_SCAN_LIMIT : ROBOT_MODEL_CAPACITY;
    for (int32_t i = 0; i < limit; i++)
        if (row_is_end(robot_models[i])) {
            if (count)
                *count = static_cast<uint16_t>(i);
            return 0;
        }
    return 1;
}

void robot_model_names(uint16_t row, int32_t language, char *key_out, char *name_out) {
    if (row >= ROBOT_MODEL_CAPACITY) {
        copy_out(key_out, "");
        copy_out(name_out, "");
        return;
    }
    const robot_model &m = robot_models[row];
    copy_out(key_out, m.key);
    copy_out(name_out, language ? m.english_name : m.japanese_name);
}

int32_t robot_model_add(const char *key, const char *japanese_name, const char *english_name,
                        const char *axis_letters, int32_t turn1, int32_t turn2, int32_t turn3,
                        int32_t f, int32_t l, int32_t u, int32_t t) {
    /* An empty key would end the table, and a group holds at most nine axes. */
    if (!key || !key[0])
        return 0;
    const char *letters = axis_letters ? axis_letters : "";
    if (std::strlen(letters) > static_cast<size_t>(MAX_GROUP_AXES))
        return 0;
    int32_t i = 0;
    while (i <= ROBOT_MODEL_LAST_FREE_ROW && !row_is_end(robot_models[i]))
        i++;
    if (i > ROBOT_MODEL_LAST_FREE_ROW)
        return 0;
    char *k = copy_text(key);
    char *ja = copy_text(japanese_name ? japanese_name : "");
    char *en = copy_text(english_name ? english_name : "");
    if (!k || !ja || !en) {
        std::free(k);
        std::free(ja);
        std::free(en);
        return 0;
    }
    robot_model &m = robot_models[i];
    m = robot_model{};
    m.key = k;
    m.japanese_name = ja;
    m.english_name = en;
    m.axes = static_cast<int32_t>(std::strlen(letters));
    m.turn[0] = turn1;
    m.turn[1] = turn2;
    m.turn[2] = turn3;
    m.has_f = f == 1;
    m.has_l = l == 1;
    m.has_u = u == 1;
    m.has_t = t == 1;
    m.default_f = f == -1;
    m.default_l = l == -1;
    m.default_u = u == -1;
    m.default_t = t == -1;
    robot_models[i + 1] = robot_model{};
    if (std::strchr(letters, 'L'))
        return add_linear_row(key, letters);
    return 1;
}

void robot_models_restore_builtin() {
    for (int32_t i = robot_models_builtin_count; i < ROBOT_MODEL_CAPACITY; i++) {
        robot_model &m = robot_models[i];
        std::free(const_cast<char *>(m.key));
        std::free(const_cast<char *>(m.japanese_name));
        std::free(const_cast<char *>(m.english_name));
        m = robot_model{};
    }
    for (int32_t i = robot_linear_builtin_count; i < ROBOT_LINEAR_CAPACITY; i++)
        std::memset(&robot_linear_axes[i], 0, sizeof robot_linear_axes[i]);
}
