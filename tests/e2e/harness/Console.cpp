#include "harness/Console.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <poll.h>
#include <pty.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "harness/Process.h"

extern char** environ;

#ifdef __SANITIZE_ADDRESS__  // GCC and Clang
#define TOLM_E2E_ASAN 1
#endif

namespace Tolm::E2E {

namespace fs = std::filesystem;

Duration Scaled(Duration d)
{
    const char* env = std::getenv("TOLM_TEST_TIMEOUT_SCALE");
    double scale = env && std::atof(env) > 0 ? std::atof(env) : 1.0;
#ifdef TOLM_E2E_ASAN
    scale *= 4;
#endif
    return Duration(static_cast<Duration::rep>(static_cast<double>(d.count()) * scale));
}

fs::path BinDir()
{
    const char* env = std::getenv("TOLM_BIN_DIR");
    return env && *env ? env : TOLM_BIN_DIR;
}

std::ostream& operator<<(std::ostream& os, const ExitStatus& s)
{
    if (s.timedOut)
        return os << "still running";
    if (s.signal)
        return os << "killed by signal " << s.signal << " (" << strsignal(s.signal) << ")";
    return os << "exit status " << s.code;
}

Console::Console(ConsoleOptions options) : opts_(std::move(options))
{
    screen_ = std::make_unique<Screen>(opts_.cols, opts_.rows, &Console::Reply, this);
    const char* tmp = std::getenv("TMPDIR");
    std::string templ = std::string(tmp && *tmp ? tmp : "/tmp") + "/tolm-e2e-XXXXXX";
    if (!mkdtemp(templ.data()))
        throw std::runtime_error("mkdtemp failed: " + std::string(strerror(errno)));
    tmpDir_ = templ;
    root_ = tmpDir_ / "root";
    if (!opts_.createRoot) {
        fs::create_directories(root_);
        return;
    }
    std::vector<std::string> argv = {(BinDir() / "tolm-hostsim").string(), "init", root_.string()};
    if (!opts_.fixture.empty())
        argv.insert(argv.end(), {"--fixture", opts_.fixture});
    const RunResult r = RunCapture(argv);
    if (r.status != 0)
        throw std::runtime_error("tolm-hostsim init failed (status " + std::to_string(r.status) + "): " + r.out);
}

Console::~Console()
{
    if (pid_ > 0 && !exit_) {
        // The program leads its own process group (forkpty): this also ends
        // what it started, such as a pager or a shell.
        kill(-pid_, SIGKILL);
        kill(pid_, SIGKILL);
        Reap(true);
    }
    StopReader();
    if (master_ >= 0)
        close(master_);
    // Sanitized builds: the program's reports become test failures.
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(tmpDir_, ec))
        if (entry.path().filename().string().starts_with("sanitizer."))
            ADD_FAILURE() << "sanitizer report from the program:\n" << ReadFile(entry.path());
    if (::testing::Test::HasFailure())
        std::cerr << "[ harness  ] kept the files of the failed test in " << tmpDir_.string() << "\n";
    else
        fs::remove_all(tmpDir_, ec);
}

fs::path Console::RootPath(std::string_view rel) const
{
    while (rel.starts_with('/'))
        rel.remove_prefix(1);
    return root_ / std::string(rel);
}

std::vector<std::string> Console::ChildEnvironment() const
{
    std::map<std::string, std::string> env;
    for (char** e = environ; *e; ++e) {
        const std::string entry = *e;
        if (const auto eq = entry.find('='); eq != std::string::npos)
            env[entry.substr(0, eq)] = entry.substr(eq + 1);
    }
    // curses prefers LINES and COLUMNS over the terminal's size.
    for (const char* name : {"LINES", "COLUMNS", "FAKETIME", "LD_PRELOAD", "TERM"})
        env.erase(name);
    if (!opts_.term.empty())
        env["TERM"] = opts_.term;
    env["TOLM_ROOT"] = root_.string();
    // pam_wrapper refuses to start without its service directory.
    std::string preload;
    if (fs::is_directory(root_ / "etc/pam.d")) {
        env["PAM_WRAPPER"] = "1";
        env["PAM_WRAPPER_SERVICE_DIR"] = (root_ / "etc/pam.d").string();
        preload = "libpam_wrapper.so";
    }
    if (!fakeTime_.empty()) {
        const std::string lib = FakeTimeLibrary();
        if (lib.empty())
            throw std::runtime_error("libfaketime is not installed");
        preload += (preload.empty() ? "" : " ") + lib;
        env["FAKETIME"] = fakeTime_;
    }
    if (!preload.empty())
        env["LD_PRELOAD"] = preload;
    const std::string path = env.count("PATH") ? env["PATH"] : "/usr/sbin:/usr/bin:/sbin:/bin";
    env["PATH"] = (root_ / "sbin").string() + ":" + (root_ / "bin").string() + ":" + path;
#ifdef TOLM_E2E_ASAN
    // The preloads come before the sanitizer runtime, and the console's
    // standard error is /dev/null: reports go to files the destructor reads.
    const std::string report = "log_path=" + (tmpDir_ / "sanitizer").string();
    env["ASAN_OPTIONS"] = (env.count("ASAN_OPTIONS") ? env["ASAN_OPTIONS"] + ":" : "") +
                          "verify_asan_link_order=0:" + report;
    env["UBSAN_OPTIONS"] = (env.count("UBSAN_OPTIONS") ? env["UBSAN_OPTIONS"] + ":" : "") +
                           "print_stacktrace=1:" + report;
    // pam_wrapper loads libpam with RTLD_DEEPBIND, which the sanitizer
    // runtime refuses; this (oddly named) switch turns that off.
    env["UID_WRAPPER_DISABLE_DEEPBIND"] = "1";
#endif
    for (const auto& [k, v] : opts_.env)
        env[k] = v;
    std::vector<std::string> out;
    for (const auto& [k, v] : env)
        out.push_back(k + "=" + v);
    return out;
}

void Console::Start(const std::vector<std::string>& args)
{
    Launch((BinDir() / "tolm").string(), args);
}

void Console::StartShell(const std::string& script)
{
    Launch("/bin/sh", {"-c", script});
}

void Console::Launch(const std::string& path, const std::vector<std::string>& args)
{
    if (pid_ > 0 && !exit_)
        throw std::logic_error("Console: a program is still running");
    StopReader();
    if (master_ >= 0)
        close(master_);
    master_ = -1;
    {
        std::lock_guard lock(mu_);
        screen_->Reset();
        screen_->Resize(opts_.cols, opts_.rows);
        raw_.clear();
    }
    // Made before the fork: the child may only make async-signal-safe calls.
    const std::vector<std::string> envStrings = ChildEnvironment();
    std::vector<std::string> argStrings = {path};
    argStrings.insert(argStrings.end(), args.begin(), args.end());
    std::vector<char*> envp, argv;
    for (const auto& e : envStrings)
        envp.push_back(const_cast<char*>(e.c_str()));
    for (const auto& a : argStrings)
        argv.push_back(const_cast<char*>(a.c_str()));
    envp.push_back(nullptr);
    argv.push_back(nullptr);

    winsize ws{};
    ws.ws_col = static_cast<unsigned short>(opts_.cols);
    ws.ws_row = static_cast<unsigned short>(opts_.rows);
    int master = -1;
    const pid_t pid = forkpty(&master, nullptr, nullptr, &ws);
    if (pid < 0)
        throw std::runtime_error("forkpty failed: " + std::string(strerror(errno)));
    if (pid == 0) {
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        for (int sig : {SIGPIPE, SIGINT, SIGQUIT, SIGTERM, SIGCHLD})
            signal(sig, SIG_DFL);
        execve(argv[0], argv.data(), envp.data());
        _exit(127);
    }
    fcntl(master, F_SETFD, FD_CLOEXEC);
    master_ = master;
    pid_ = pid;
    exit_.reset();
    if (pipe2(stopPipe_, O_CLOEXEC) != 0)
        throw std::runtime_error("pipe2 failed");
    {
        std::lock_guard lock(mu_);
        eof_ = false;
        lastOutput_ = Clock::now();
    }
    reader_ = std::thread([this, master, stop = stopPipe_[0]] { ReaderLoop(master, stop); });
}

void Console::ReaderLoop(int fd, int stopFd)
{
    char buf[8192];
    for (;;) {
        pollfd fds[2] = {{fd, POLLIN, 0}, {stopFd, POLLIN, 0}};
        if (poll(fds, 2, -1) < 0 && errno != EINTR)
            break;
        if (fds[1].revents)
            break;
        const ssize_t n = read(fd, buf, sizeof buf);
        if (n < 0 && (errno == EINTR || errno == EAGAIN))
            continue;
        if (n <= 0)
            break;  // EIO: every holder of the terminal has closed it
        std::lock_guard lock(mu_);
        raw_.append(buf, static_cast<size_t>(n));
        screen_->Feed(std::string_view(buf, static_cast<size_t>(n)));
        ++outputCount_;
        lastOutput_ = Clock::now();
        changed_.notify_all();
    }
    std::lock_guard lock(mu_);
    eof_ = true;
    changed_.notify_all();
}

void Console::StopReader()
{
    if (reader_.joinable()) {
        (void)!write(stopPipe_[1], "x", 1);
        reader_.join();
    }
    for (int& fd : stopPipe_) {
        if (fd >= 0)
            close(fd);
        fd = -1;
    }
}

void Console::Reply(const char* bytes, size_t len, void* user)
{
    // libvterm's answers (cursor reports ...), with the lock held.
    auto* self = static_cast<Console*>(user);
    while (len > 0 && self->master_ >= 0) {
        const ssize_t n = write(self->master_, bytes, len);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return;
        bytes += n;
        len -= static_cast<size_t>(n);
    }
}

void Console::Reap(bool block)
{
    if (pid_ <= 0 || exit_)
        return;
    int status = 0;
    pid_t r;
    do {
        r = waitpid(pid_, &status, block ? 0 : WNOHANG);
    } while (r < 0 && errno == EINTR);
    if (r == pid_)
        exit_ = WIFSIGNALED(status) ? ExitStatus::Signalled(WTERMSIG(status)) : ExitStatus::Exited(WEXITSTATUS(status));
    else if (r < 0)
        exit_ = ExitStatus::Exited(-1);  // not our child any more
}

bool Console::Running()
{
    Reap(false);
    return pid_ > 0 && !exit_;
}

void Console::Signal(int sig)
{
    if (!Running())
        ADD_FAILURE() << "Console: no running program to send signal " << sig << " to";
    else
        kill(pid_, sig);
}

void Console::Resize(int cols, int rows)
{
    opts_.cols = cols;
    opts_.rows = rows;
    {
        std::lock_guard lock(mu_);
        screen_->Resize(cols, rows);
    }
    winsize ws{};
    ws.ws_col = static_cast<unsigned short>(cols);
    ws.ws_row = static_cast<unsigned short>(rows);
    if (master_ >= 0)
        ioctl(master_, TIOCSWINSZ, &ws);
}

void Console::Write(std::string_view bytes)
{
    if (master_ < 0) {
        ADD_FAILURE() << "Console: no program started, cannot send input";
        return;
    }
    while (!bytes.empty()) {
        const ssize_t n = write(master_, bytes.data(), bytes.size());
        if (n < 0 && (errno == EINTR || errno == EAGAIN))
            continue;
        if (n <= 0) {
            ADD_FAILURE() << "Console: writing to the terminal failed: " << strerror(errno);
            return;
        }
        bytes.remove_prefix(static_cast<size_t>(n));
    }
}

void Console::Press(Key key, int times)
{
    const KeyFlavour flavour = opts_.term == "linux" ? KeyFlavour::Linux : KeyFlavour::Xterm;
    for (int i = 0; i < times; ++i) {
        if (key == Key::Esc) {
            SendEsc();
            continue;
        }
        std::unique_lock lock(mu_);
        const bool appCursor = screen_->ApplicationCursor();
        lock.unlock();
        Write(KeySequence(key, flavour, appCursor));
    }
}

void Console::SendEsc()
{
    std::unique_lock lock(mu_);
    const uint64_t before = outputCount_;
    lock.unlock();
    Write("\x1b");
    lock.lock();
    changed_.wait_for(lock, Scaled(150ms), [&] { return outputCount_ != before || eof_; });
}

}  // namespace Tolm::E2E
