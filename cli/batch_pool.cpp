/*
** batch_pool.cpp - the worker processes of a batch. The library is not
** re-entrant and keeps its state per process, so each worker is a fork of
** the command with the cell already loaded. The parent hands out item
** numbers on one pipe per worker and reads results from another; a worker
** that dies or runs past the time limit costs only the file it was on: it
** is replaced, and the files queued behind it go to another worker.
** Results are handed on in item order, so the report is the same for any
** number of workers.
*/
#include "cli/batch.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <deque>
#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace {

/* Items queued per worker: one at work, one waiting, so that a worker
   never idles while the parent sleeps. */
constexpr size_t queue_depth = 2;

volatile sig_atomic_t interrupted = 0;

void on_interrupt(int) { interrupted = 1; }

struct worker {
    pid_t pid = -1;
    int to_fd = -1;   /* item numbers, parent to worker */
    int from_fd = -1; /* results, worker to parent */
    std::deque<uint32_t> queue;
    double started = 0; /* when the front item began */
    std::string inbuf;
};

struct pool {
    const batch_plan &plan;
    const std::vector<batch_item> &items;
    std::vector<batch_result> &results;
    batch_sink sink;
    std::string scratch_root;
    std::vector<worker> workers;
    std::deque<uint32_t> todo;
    size_t next_out = 0;
    unsigned serial = 0;
};

bool write_full(int fd, const void *data, size_t size) {
    const char *p = static_cast<const char *>(data);
    while (size > 0) {
        ssize_t n = ::write(fd, p, size);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        p += n;
        size -= static_cast<size_t>(n);
    }
    return true;
}

bool read_full(int fd, void *data, size_t size) {
    char *p = static_cast<char *>(data);
    while (size > 0) {
        ssize_t n = ::read(fd, p, size);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        p += n;
        size -= static_cast<size_t>(n);
    }
    return true;
}

[[noreturn]] void worker_main(pool &p, int in_fd, int out_fd, const std::string &scratch) {
    signal(SIGINT, SIG_DFL);
    signal(SIGTERM, SIG_DFL);
    std::error_code ec;
    fs::create_directories(scratch, ec);
    uint32_t index;
    while (read_full(in_fd, &index, sizeof index)) {
        if (index >= p.items.size())
            break;
        batch_result r = batch_run_item(p.plan, p.items[index], scratch);
        std::string rec;
        wire_put_result(rec, index, r);
        if (!write_full(out_fd, rec.data(), rec.size()))
            break;
    }
    fs::remove_all(scratch, ec);
    std::fflush(stdout);
    _exit(0);
}

void close_worker_fds(worker &w) {
    if (w.to_fd >= 0)
        ::close(w.to_fd);
    if (w.from_fd >= 0)
        ::close(w.from_fd);
    w.to_fd = w.from_fd = -1;
}

bool spawn(pool &p, worker &w) {
    int down[2], up[2];
    if (::pipe(down) != 0)
        return false;
    if (::pipe(up) != 0) {
        ::close(down[0]);
        ::close(down[1]);
        return false;
    }
    std::string scratch = p.scratch_root + "/w" + std::to_string(p.serial++);
    std::fflush(stdout);
    std::fflush(stderr);
    pid_t pid = ::fork();
    if (pid < 0) {
        for (int fd : {down[0], down[1], up[0], up[1]})
            ::close(fd);
        return false;
    }
    if (pid == 0) {
        /* Other workers' pipe ends must not stay open here, or their deaths
           would go unseen by the parent. */
        for (worker &o : p.workers)
            close_worker_fds(o);
        ::close(down[1]);
        ::close(up[0]);
        worker_main(p, down[0], up[1], scratch);
    }
    ::close(down[0]);
    ::close(up[1]);
    w = worker();
    w.pid = pid;
    w.to_fd = down[1];
    w.from_fd = up[0];
    ::fcntl(w.from_fd, F_SETFL, ::fcntl(w.from_fd, F_GETFL) | O_NONBLOCK);
    ::fcntl(w.to_fd, F_SETFD, FD_CLOEXEC);
    ::fcntl(w.from_fd, F_SETFD, FD_CLOEXEC);
    return true;
}

void hand_on(pool &p) {
    while (p.next_out < p.items.size() && p.results[p.next_out].done)
        p.sink.deliver(p.sink.ctx, p.next_out++);
}

void settle(pool &p, uint32_t index, batch_result r) {
    r.done = true;
    p.results[index] = std::move(r);
    hand_on(p);
}

void internal_failure(pool &p, uint32_t index, const std::string &why) {
    batch_result r;
    r.code = batch_code_internal;
    r.message = "internal error: " + why;
    settle(p, index, std::move(r));
}

std::string death_reason(int status) {
    if (WIFSIGNALED(status)) {
        int sig = WTERMSIG(status);
        const char *name = strsignal(sig);
        return "the translation crashed (signal " + std::to_string(sig) + (name ? std::string(", ") + name : "") + ")";
    }
    if (WIFEXITED(status))
        return "the translation ended the worker (exit status " + std::to_string(WEXITSTATUS(status)) + ")";
    return "the worker was lost";
}

/* The worker is gone: its front item fails with why, the rest go back. */
void bury(pool &p, worker &w, const std::string &why) {
    close_worker_fds(w);
    if (w.pid > 0) {
        int status = 0;
        while (::waitpid(w.pid, &status, 0) < 0 && errno == EINTR) {
        }
        w.pid = -1;
        if (!w.queue.empty()) {
            uint32_t front = w.queue.front();
            w.queue.pop_front();
            internal_failure(p, front, why.empty() ? death_reason(status) : why);
        }
    }
    for (auto it = w.queue.rbegin(); it != w.queue.rend(); ++it)
        p.todo.push_front(*it);
    w.queue.clear();
    w.inbuf.clear();
}

void dispatch(pool &p, worker &w) {
    while (w.pid > 0 && w.queue.size() < queue_depth && !p.todo.empty()) {
        uint32_t index = p.todo.front();
        if (!write_full(w.to_fd, &index, sizeof index))
            return; /* its death shows on the result pipe */
        p.todo.pop_front();
        if (w.queue.empty())
            w.started = batch_now();
        w.queue.push_back(index);
    }
}

void read_results(pool &p, worker &w) {
    char buf[65536];
    bool gone = false;
    for (;;) {
        ssize_t n = ::read(w.from_fd, buf, sizeof buf);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
            break;
        if (n <= 0) {
            gone = true;
            break;
        }
        w.inbuf.append(buf, static_cast<size_t>(n));
    }
    /* Whole results that came before a death still count. */
    for (;;) {
        uint32_t index = 0;
        batch_result r;
        int got = wire_take_result(w.inbuf, index, r);
        if (got == 0)
            break;
        if (got < 0 || w.queue.empty() || w.queue.front() != index) {
            ::kill(w.pid, SIGKILL);
            bury(p, w, "the worker sent a damaged result");
            return;
        }
        w.queue.pop_front();
        w.started = batch_now();
        settle(p, index, std::move(r));
    }
    if (gone)
        bury(p, w, "");
}

void check_time(pool &p, worker &w, double now) {
    if (w.pid <= 0 || w.queue.empty() || now - w.started < p.plan.timeout)
        return;
    ::kill(w.pid, SIGKILL);
    char secs[32];
    std::snprintf(secs, sizeof secs, "%g", p.plan.timeout);
    bury(p, w, std::string("the translation took longer than ") + secs + " s (--timeout)");
}

bool busy(const pool &p) {
    if (!p.todo.empty())
        return true;
    for (const worker &w : p.workers)
        if (!w.queue.empty())
            return true;
    return false;
}

void run_loop(pool &p) {
    while (busy(p) && !interrupted) {
        size_t live = 0;
        for (worker &w : p.workers) {
            if (w.pid <= 0 && !p.todo.empty() && !spawn(p, w))
                continue;
            dispatch(p, w);
            live += w.pid > 0;
        }
        if (live == 0) {
            /* No process can be made: the files left fail, not the command. */
            while (!p.todo.empty()) {
                uint32_t index = p.todo.front();
                p.todo.pop_front();
                internal_failure(p, index, "cannot start a worker process");
            }
            return;
        }
        std::vector<pollfd> fds;
        std::vector<worker *> owners;
        double now = batch_now(), wait = 3600;
        for (worker &w : p.workers) {
            if (w.pid <= 0)
                continue;
            fds.push_back({w.from_fd, POLLIN, 0});
            owners.push_back(&w);
            if (!w.queue.empty())
                wait = std::min(wait, p.plan.timeout - (now - w.started));
        }
        int ms = static_cast<int>(std::ceil(std::max(wait, 0.0) * 1000.0));
        int n = ::poll(fds.data(), fds.size(), ms);
        if (n < 0 && errno != EINTR)
            break;
        for (size_t k = 0; n > 0 && k < fds.size(); k++)
            if (fds[k].revents & (POLLIN | POLLHUP | POLLERR))
                read_results(p, *owners[k]);
        now = batch_now();
        for (worker &w : p.workers)
            check_time(p, w, now);
    }
}

void stop_workers(pool &p) {
    for (worker &w : p.workers) {
        if (w.pid <= 0)
            continue;
        if (interrupted)
            ::kill(w.pid, SIGKILL);
        close_worker_fds(w);
        int status;
        while (::waitpid(w.pid, &status, 0) < 0 && errno == EINTR) {
        }
        w.pid = -1;
    }
}

std::string make_scratch_root() {
    const char *tmp = std::getenv("TMPDIR");
    std::string base = (tmp && *tmp) ? tmp : "/tmp";
    std::string pattern = base + "/vorex-zd-batch-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) {
        pattern = "/tmp/vorex-zd-batch-XXXXXX";
        if (::mkdtemp(pattern.data()) == nullptr)
            return "";
    }
    return pattern;
}

} // namespace

bool batch_run_pool(const batch_plan &plan, const std::vector<batch_item> &items,
                    std::vector<batch_result> &results, batch_sink sink) {
    pool p{plan, items, results, sink, "", {}, {}, 0, 0};
    for (uint32_t i = 0; i < items.size(); i++)
        if (!results[i].done)
            p.todo.push_back(i);
    hand_on(p);
    if (p.todo.empty())
        return true;
    p.scratch_root = make_scratch_root();
    if (p.scratch_root.empty()) {
        while (!p.todo.empty()) {
            internal_failure(p, p.todo.front(), "cannot make a scratch folder");
            p.todo.pop_front();
        }
        return true;
    }
    struct sigaction sa = {}, old_int = {}, old_term = {}, old_pipe = {};
    sa.sa_handler = on_interrupt;
    sigemptyset(&sa.sa_mask);
    sigaction(SIGINT, &sa, &old_int);
    sigaction(SIGTERM, &sa, &old_term);
    struct sigaction ign = {};
    ign.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ign, &old_pipe);

    size_t count = std::min<size_t>(static_cast<size_t>(std::max(plan.jobs, 1)), p.todo.size());
    p.workers.resize(count);
    run_loop(p);
    stop_workers(p);

    std::error_code ec;
    fs::remove_all(p.scratch_root, ec);
    sigaction(SIGINT, &old_int, nullptr);
    sigaction(SIGTERM, &old_term, nullptr);
    sigaction(SIGPIPE, &old_pipe, nullptr);
    return !interrupted;
}
