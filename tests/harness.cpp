#include "harness.h"

#include "scene.h"
#include "sr_device.h"
#include "vorda.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <sstream>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace
{

int anonymous_file()
{
    return memfd_create("output", MFD_CLOEXEC);
}

std::string contents_of(int fd)
{
    std::string text;
    char chunk[4096];
    for (off_t at = 0;;) {
        const ssize_t length = pread(fd, chunk, sizeof(chunk), at);
        if (length <= 0)
            return text;
        text.append(chunk, static_cast<size_t>(length));
        at += length;
    }
}

std::vector<char *> pointers(std::vector<std::string> &texts)
{
    std::vector<char *> result;
    for (std::string &text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

std::string from_environment(const char *name, const std::string &otherwise)
{
    const char *value = getenv(name);
    return value != nullptr ? value : otherwise;
}

[[gnu::format(printf, 2, 0)]] void note(int priority, const char *format, va_list args)
{
    char text[256];
    vsnprintf(text, sizeof(text), format, args);
    logged.emplace_back(priority, text);
}

} // namespace

Log logged;

extern "C" [[gnu::format(printf, 2, 3)]] void syslog(int priority, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    note(priority, format, args);
    va_end(args);
}

// The messages carry the system's default identity: nobody calls this.
extern "C" void openlog(const char *identity, int, int)
{
    logged.emplace_back(-1, std::string("openlog ") + (identity != nullptr ? identity : ""));
}

// What a fortified build calls in place of syslog.
extern "C" void syslog_checked(int priority, int flag, const char *format,
                               ...) __asm__("__syslog_chk");
extern "C" [[gnu::format(printf, 3, 4)]] void syslog_checked(int priority, int /*flag*/,
                                                             const char *format, ...)
{
    va_list args;
    va_start(args, format);
    note(priority, format, args);
    va_end(args);
}

Result captured(const std::function<int()> &call)
{
    fflush(stdout);
    fflush(stderr);
    const int kept[] = {dup(1), dup(2)};
    const int files[] = {anonymous_file(), anonymous_file()};
    dup2(files[0], 1);
    dup2(files[1], 2);

    Result result;
    result.status = call();

    fflush(stdout);
    fflush(stderr);
    result.out = contents_of(files[0]);
    result.err = contents_of(files[1]);
    for (int i = 0; i < 2; i++) {
        dup2(kept[i], i + 1);
        close(kept[i]);
        close(files[i]);
    }
    return result;
}

void register_categories()
{
    static const bool done = (regCmd_all(), true);
    (void)done;
}

std::vector<std::pair<std::string, std::string>> parse_listing(const std::string &listing,
                                                               const std::string &category)
{
    std::vector<std::pair<std::string, std::string>> items;
    std::istringstream lines(listing);
    const std::string start = " - " + category + ".";
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(start))
            items.emplace_back(
                line.substr(start.size(), line.find_first_of(" :", start.size()) - start.size()),
                line.substr(line.find(": ") + 2));
    return items;
}

std::set<std::string> whole_frames()
{
    register_categories();
    std::set<std::string> texts;
    const auto ctx = std::make_unique<DipPathCtx>();
    for (int byte = 0; byte < 256; byte++) {
        memset(static_cast<void *>(ctx.get()), byte, sizeof(*ctx));
        texts.insert(captured([&] { return parse_entry(ctx.get(), "all"); }).out);
    }
    return texts;
}

std::string read_file(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string difference_from_golden(const std::string &name, const std::string &text)
{
    const std::string path = VORDA_SOURCE_DIR "/tests/golden/" + name;
    if (getenv("VORDA_GOLDEN") != nullptr)
        std::ofstream(path, std::ios::binary) << text;
    const std::string recorded = read_file(path);
    if (text == recorded)
        return "";
    std::istringstream recorded_lines(recorded);
    std::istringstream printed_lines(text);
    for (int number = 1;; number++) {
        std::string expected;
        std::string printed;
        const bool more = static_cast<bool>(std::getline(recorded_lines, expected));
        const bool more_printed = static_cast<bool>(std::getline(printed_lines, printed));
        if (!more && !more_printed)
            return path + ": the end of its last line differs";
        if (!more)
            expected = "(the end)";
        if (!more_printed)
            printed = "(the end)";
        if (expected != printed)
            return path + ":" + std::to_string(number) + "\nrecorded: " + expected +
                   "\nprinted:  " + printed;
    }
}

TempFile::TempFile(size_t size) : path_(from_environment("TMPDIR", "/tmp") + "/vorda-test-XXXXXX")
{
    const int fd = mkstemp(path_.data());
    if (fd < 0 || ftruncate(fd, static_cast<off_t>(size)) != 0)
        perror(path_.c_str());
    close(fd);
}

TempFile::~TempFile()
{
    unlink(path_.c_str());
}

Region::Region() : conf_(nullptr)
{
    static int count = 0;
    file_ = from_environment("TMPDIR", "/tmp") + "/vorda-region-" + std::to_string(getpid()) + "-" +
            std::to_string(count++);
    const int fd = open(file_.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    void *region = MAP_FAILED;
    if (fd >= 0 && ftruncate(fd, sizeof(VplatConf)) == 0)
        region = mmap(nullptr, sizeof(VplatConf), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (region == MAP_FAILED) {
        perror(file_.c_str());
        abort();
    }
    close(fd);
    conf_ = static_cast<VplatConf *>(region);
    init_region(conf_);
    for (int path = 0; path < SCENE_PATH_NUM; path++)
        fill_frame(&conf_->path[path].dip, path, 0);
}

Region::~Region()
{
    munmap(conf_, sizeof(VplatConf));
    unlink(file_.c_str());
}

Child::Child(const std::vector<std::string> &argv, const Environment &added, const std::string &out)
    : out_(out.empty() ? anonymous_file() : open(out.c_str(), O_WRONLY | O_CLOEXEC)),
      err_(anonymous_file())
{
    Environment environment;
    for (char **entry = environ; *entry != nullptr; entry++) {
        const std::string text = *entry;
        const size_t equals = text.find('=');
        environment[text.substr(0, equals)] = text.substr(equals + 1);
    }
    for (const auto &[name, value] : added)
        environment[name] = value;
    std::vector<std::string> entries;
    for (const auto &[name, value] : environment)
        entries.push_back(name + "=" + value);
    std::vector<std::string> words = argv;
    const std::vector<char *> arguments = pointers(words);
    const std::vector<char *> variables = pointers(entries);

    const pid_t parent = getpid();
    pid_ = fork();
    if (pid_ != 0)
        return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(1);
    for (int signal = 1; signal < NSIG; signal++)
        ::signal(signal, SIG_DFL); // some may be ignored, by nohup say
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    dup2(out_, 1);
    dup2(err_, 2);
    execvpe(arguments[0], arguments.data(), variables.data());
    fprintf(stderr, "%s: %s\n", arguments[0], strerror(errno));
    _exit(127);
}

Child::~Child()
{
    if (!ended_) {
        kill(pid_, SIGKILL);
        waitpid(pid_, &wait_status_, 0);
    }
    close(out_);
    close(err_);
}

bool Child::ends()
{
    return eventually([this] {
        if (!ended_)
            ended_ = waitpid(pid_, &wait_status_, WNOHANG) == pid_;
        return ended_;
    });
}

bool Child::looks_again() const
{
    const std::string proc = "/proc/" + std::to_string(pid_);
    const long waits = waits_of(proc);
    return eventually([&] { return waits_of(proc) > waits + 3; });
}

std::string Child::said() const
{
    return contents_of(err_);
}

Result Child::finish()
{
    if (!ends()) {
        kill(pid_, SIGKILL);
        ended_ = waitpid(pid_, &wait_status_, 0) == pid_;
    }
    return {contents_of(out_), contents_of(err_),
            WIFEXITED(wait_status_) ? WEXITSTATUS(wait_status_) : -WTERMSIG(wait_status_)};
}

std::string built(const std::string &name)
{
    return from_environment("VORDA_BUILD", VORDA_BUILD_DIR) + "/" + name;
}

std::unique_ptr<Child> start_tool(const std::string &name, const std::vector<std::string> &args,
                                  const std::string &region, const Environment &added,
                                  const std::string &out)
{
    static const std::string library = preloadable(built("sim/libsr_device.so"));
    Environment environment = added;
    environment[SR_REGION_ENV] = region;

    std::vector<std::string> argv;
    std::istringstream emulator(from_environment("VORDA_EMULATOR", ""));
    argv.assign(std::istream_iterator<std::string>(emulator), {});
    if (argv.empty()) {
        environment["LD_PRELOAD"] = library;
        environment["ASAN_OPTIONS"] = "verify_asan_link_order=0";
    } else {
        argv.insert(argv.end(), {"-E", "LD_PRELOAD=" + library});
    }
    argv.push_back(built(name));
    argv.insert(argv.end(), args.begin(), args.end());
    return std::make_unique<Child>(argv, environment, out);
}

std::unique_ptr<Child> start_vorda(const std::vector<std::string> &args, const std::string &region,
                                   const Environment &added, const std::string &out)
{
    return start_tool("vorda", args, region, added, out);
}

Result run_vorda(const std::vector<std::string> &args, const std::string &region,
                 const Environment &added, const std::string &out)
{
    return start_vorda(args, region, added, out)->finish();
}

long waits_of(const std::string &folder)
{
    const std::string status = read_file(folder + "/status");
    const std::string name = "\nvoluntary_ctxt_switches:";
    const size_t at = status.find(name);
    return at == std::string::npos ? 0 : strtol(&status[at + name.size()], nullptr, 10);
}

bool eventually(const std::function<bool()> &condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(2);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    return true;
}

std::unique_ptr<DipPathCtx> snapshot_of(const std::string &kind)
{
    auto ctx = std::make_unique<DipPathCtx>();
    auto *bytes = reinterpret_cast<uint8_t *>(ctx.get());
    memset(bytes, kind == "ones" ? 0xFF : 0, sizeof(*ctx));
    if (kind == "distinct") {
        uint32_t state = 1;
        for (size_t i = 0; i < sizeof(*ctx); i++) {
            do {
                state = state * 1664525 + 1013904223;
                bytes[i] = static_cast<uint8_t>(state >> 24 | 0x80);
            } while (i > 0 && bytes[i] == bytes[i - 1]);
        }
        DipCtx &dip = ctx->dip_ctx;
        dip.win_info.win_idx = {.dev = 0, .chn = 2, .win = 1, .dummy0 = 0};
        dip.active_win_cnt = 6;
        dip.flat_win_list[5] = 9;
    }
    return ctx;
}
