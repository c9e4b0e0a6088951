// A listing in a temporary file, a fresh context and a started lexer; the
// shared run state the lexer reads is saved and put back afterwards.
#ifndef VZ_TESTS_TEST_LEXER_FIXTURE_H
#define VZ_TESTS_TEST_LEXER_FIXTURE_H

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "core/dictionary.h"
#include "core/run_state.h"
#include "text/lexer.h"

// Test names carry the case's input; keep them to characters ctest takes.
inline std::string case_name(const char *input) {
    std::string out;
    for (const char *p = input; *p && out.size() < 40; p++) {
        unsigned char c = static_cast<unsigned char>(*p);
        out += (c < 0x80 && std::isalnum(c)) || c == '.' || c == '-' || c == '+' ? char(c) : '_';
    }
    return out;
}

struct lexer_run {
    scan_ctx *ctx = nullptr;
    FILE *file = nullptr;
    int32_t saved_select;
    uint32_t saved_zen;

    // lang: 1 English, 0 Japanese, -1 let the lexer look into the file.
    explicit lexer_run(const std::string &bytes, int32_t lang = 1, uint32_t zen = 0)
        : saved_select(dict_select), saved_zen(zentohan_flag) {
        file = std::tmpfile();
        std::fwrite(bytes.data(), 1, bytes.size(), file);
        std::rewind(file);
        // The driver hands over unzeroed memory; garbage must not matter.
        ctx = static_cast<scan_ctx *>(std::malloc(sizeof(scan_ctx)));
        std::memset(ctx, 0xA5, sizeof(scan_ctx));
        dict_select = lang;
        zentohan_flag = zen;
        dict_reset_reading();
        lexer_reset_run();
        input_line_no = 1;
        ctx->stream = file;
        lexer_start(ctx);
    }
    ~lexer_run() {
        std::fclose(file);
        std::free(ctx);
        dict_select = saved_select;
        zentohan_flag = saved_zen;
        lexer_reset_run();
    }
    lexer_run(const lexer_run &) = delete;
    lexer_run &operator=(const lexer_run &) = delete;

    token_rec next() {
        token_rec t;
        next_token(ctx, &t);
        return t;
    }
    token_rec peek() {
        token_rec t;
        peek_token(ctx, &t);
        return t;
    }
    // Codes up to and without the end of file (bounded against runaways).
    std::vector<int32_t> codes() {
        std::vector<int32_t> out;
        for (int i = 0; i < 10000; i++) {
            token_rec t = next();
            if (t.code == tok_eof)
                break;
            out.push_back(t.code);
        }
        return out;
    }
};

#endif
