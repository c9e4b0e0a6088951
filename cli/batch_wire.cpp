/*
** batch_wire.cpp - one file's result as bytes on the pipe from a worker
** process to the parent: a length-framed record of fixed-width numbers and
** counted texts. The parent checks every length, so a worker that dies in
** the middle of a record or writes nonsense is told apart from a result.
*/
#include "cli/batch.h"

#include <cstring>

namespace {

/* No result comes near this; anything larger is damage. */
constexpr uint32_t record_limit = 1u << 24;

void put32(std::string &out, uint32_t v) {
    char b[4] = {static_cast<char>(v >> 24), static_cast<char>(v >> 16), static_cast<char>(v >> 8),
                 static_cast<char>(v)};
    out.append(b, 4);
}

void put_text(std::string &out, const std::string &s) {
    put32(out, static_cast<uint32_t>(s.size()));
    out += s;
}

struct reader {
    const std::string &buf;
    size_t pos;
    size_t end;
    bool bad = false;

    uint32_t u32() {
        if (end - pos < 4) {
            bad = true;
            return 0;
        }
        const auto *p = reinterpret_cast<const unsigned char *>(buf.data() + pos);
        pos += 4;
        return (uint32_t{p[0]} << 24) | (uint32_t{p[1]} << 16) | (uint32_t{p[2]} << 8) | p[3];
    }
    std::string text() {
        uint32_t n = u32();
        if (bad || end - pos < n) {
            bad = true;
            return "";
        }
        std::string s = buf.substr(pos, n);
        pos += n;
        return s;
    }
};

} // namespace

void wire_put_result(std::string &out, uint32_t index, const batch_result &r) {
    std::string body;
    put32(body, index);
    put32(body, r.ok ? 1 : 0);
    put32(body, static_cast<uint32_t>(r.code));
    put32(body, static_cast<uint32_t>(r.line));
    put_text(body, r.message);
    put_text(body, r.construct);
    put32(body, static_cast<uint32_t>(r.warnings.size()));
    for (const batch_warning &w : r.warnings) {
        put32(body, static_cast<uint32_t>(w.line));
        put_text(body, w.text);
    }
    put32(out, static_cast<uint32_t>(body.size()));
    out += body;
}

int wire_take_result(std::string &buf, uint32_t &index, batch_result &r) {
    if (buf.size() < 4)
        return 0;
    reader head{buf, 0, 4};
    uint32_t size = head.u32();
    if (size > record_limit || size < 28)
        return -1;
    if (buf.size() - 4 < size)
        return 0;
    reader rd{buf, 4, 4 + size};
    index = rd.u32();
    uint32_t ok = rd.u32();
    r = batch_result();
    r.ok = ok == 1;
    r.code = static_cast<int32_t>(rd.u32());
    r.line = static_cast<int32_t>(rd.u32());
    r.message = rd.text();
    r.construct = rd.text();
    uint32_t count = rd.u32();
    for (uint32_t k = 0; k < count && !rd.bad; k++) {
        batch_warning w;
        w.line = static_cast<int32_t>(rd.u32());
        w.text = rd.text();
        r.warnings.push_back(std::move(w));
    }
    if (rd.bad || ok > 1 || rd.pos != rd.end)
        return -1;
    r.done = true;
    buf.erase(0, 4 + size);
    return 1;
}
