/*
** batch_report.cpp - what a batch tells its user: one line per failed file
** and per warning with a summary (text), or one JSON object per file and a
** summary object (JSON Lines); and the progress line on a terminal.
*/
#include "cli/batch.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>

namespace {

void count_code(batch_report &rep, int32_t code) {
    for (auto &entry : rep.by_code)
        if (entry.first == code) {
            entry.second++;
            return;
        }
    rep.by_code.emplace_back(code, 1);
}

std::string where(const std::string &path, int32_t line) {
    return line != 0 ? path + ":" + std::to_string(line) : path;
}

/* Length of the well-formed UTF-8 sequence at s[i], or 0. */
size_t utf8_length(const std::string &s, size_t i) {
    auto b = [&](size_t k) { return static_cast<unsigned char>(s[k]); };
    unsigned char c = b(i);
    size_t n;
    uint32_t cp;
    if (c >= 0xC2 && c <= 0xDF) {
        n = 2;
        cp = c & 0x1F;
    } else if (c >= 0xE0 && c <= 0xEF) {
        n = 3;
        cp = c & 0x0F;
    } else if (c >= 0xF0 && c <= 0xF4) {
        n = 4;
        cp = c & 0x07;
    } else {
        return 0;
    }
    if (i + n > s.size())
        return 0;
    for (size_t k = 1; k < n; k++) {
        if ((b(i + k) & 0xC0) != 0x80)
            return 0;
        cp = (cp << 6) | (b(i + k) & 0x3F);
    }
    /* Overlong forms, surrogates and code points past U+10FFFF. */
    if ((n == 3 && cp < 0x800) || (n == 4 && (cp < 0x10000 || cp > 0x10FFFF)) || (cp >= 0xD800 && cp <= 0xDFFF))
        return 0;
    return n;
}

std::string json_object(const batch_item &item, const batch_result &r) {
    std::string o = "{\"file\": " + json_string(item.path);
    o += r.ok ? ", \"ok\": true" : ", \"ok\": false";
    o += ", \"code\": " + std::to_string(r.ok ? 0 : r.code);
    o += ", \"line\": " + std::to_string(r.line);
    o += ", \"message\": " + json_string(r.message);
    o += ", \"construct\": " + (r.construct.empty() ? std::string("null") : json_string(r.construct));
    o += ", \"warnings\": [";
    for (size_t k = 0; k < r.warnings.size(); k++)
        o += (k ? ", " : "") + json_string(r.warnings[k].text);
    o += "]}\n";
    return o;
}

} // namespace

std::string json_string(const std::string &bytes) {
    static const char hex[] = "0123456789abcdef";
    std::string o = "\"";
    for (size_t i = 0; i < bytes.size();) {
        unsigned char c = static_cast<unsigned char>(bytes[i]);
        if (c >= 0x80) {
            size_t n = utf8_length(bytes, i);
            if (n) {
                o.append(bytes, i, n);
                i += n;
            } else {
                /* Not UTF-8 (a Shift-JIS name, say): the byte as a lone low
                   surrogate, which a reader can map back to the byte. */
                o += "\\udc";
                o += hex[c >> 4];
                o += hex[c & 15];
                i++;
            }
            continue;
        }
        i++;
        switch (c) {
        case '"': o += "\\\""; break;
        case '\\': o += "\\\\"; break;
        case '\n': o += "\\n"; break;
        case '\r': o += "\\r"; break;
        case '\t': o += "\\t"; break;
        case '\b': o += "\\b"; break;
        case '\f': o += "\\f"; break;
        default:
            if (c < 0x20) {
                o += "\\u00";
                o += hex[c >> 4];
                o += hex[c & 15];
            } else {
                o += static_cast<char>(c);
            }
        }
    }
    return o + "\"";
}

std::string report_text_lines(const batch_item &item, const batch_result &r) {
    std::string s;
    if (!r.ok)
        s += where(item.path, r.line) + ": error " + std::to_string(r.code) + ": " + r.message + "\n";
    for (const batch_warning &w : r.warnings)
        s += where(item.path, w.line) + ": warning: " + w.text + "\n";
    return s;
}

void report_file(batch_report &rep, const batch_item &item, const batch_result &r) {
    rep.files++;
    if (r.ok) {
        rep.ok++;
    } else {
        rep.failed++;
        count_code(rep, r.code);
    }
    std::string s = rep.json ? json_object(item, r) : report_text_lines(item, r);
    std::fwrite(s.data(), 1, s.size(), rep.out);
}

std::string report_summary_text(const batch_report &rep) {
    std::string s = std::to_string(rep.files) + " files: " + std::to_string(rep.ok) + " ok, " +
                    std::to_string(rep.failed) + " failed";
    if (rep.failed == 0)
        return s + "\n";
    auto top = rep.by_code;
    std::stable_sort(top.begin(), top.end(), [](const auto &a, const auto &b) {
        return a.second != b.second ? a.second > b.second : a.first < b.first;
    });
    s += " (most frequent codes:";
    for (size_t k = 0; k < top.size() && k < 3; k++)
        s += (k ? ", " : " ") + std::to_string(top[k].first) + " x" + std::to_string(top[k].second);
    return s + ")\n";
}

void report_summary(batch_report &rep) {
    std::string s;
    if (rep.json) {
        auto codes = rep.by_code;
        std::sort(codes.begin(), codes.end());
        s = "{\"summary\": {\"files\": " + std::to_string(rep.files) + ", \"ok\": " + std::to_string(rep.ok) +
            ", \"failed\": " + std::to_string(rep.failed) + ", \"by_code\": {";
        for (size_t k = 0; k < codes.size(); k++)
            s += (k ? ", \"" : "\"") + std::to_string(codes[k].first) + "\": " + std::to_string(codes[k].second);
        s += "}}}\n";
    } else {
        s = report_summary_text(rep);
    }
    std::fwrite(s.data(), 1, s.size(), rep.out);
    std::fflush(rep.out);
}

double batch_now() {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

void progress_begin(batch_progress &p, size_t total, bool quiet) {
    p = batch_progress();
    p.total = total;
    p.on = !quiet && total > 1 && ::isatty(STDERR_FILENO);
    p.start = p.last = batch_now();
}

void progress_step(batch_progress &p) {
    p.done++;
    if (!p.on)
        return;
    double now = batch_now();
    if (now - p.last < 0.1 && p.done < p.total)
        return;
    p.last = now;
    double rate = now > p.start ? static_cast<double>(p.done) / (now - p.start) : 0.0;
    std::fprintf(stderr, "\r%zu/%zu files, %.0f files/s", p.done, p.total, rate);
    std::fflush(stderr);
    p.shown = true;
}

void progress_clear(batch_progress &p) {
    if (!p.shown)
        return;
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
    p.shown = false;
}
