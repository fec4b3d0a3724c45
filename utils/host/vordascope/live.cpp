// vordascope live: follows an input and shows it in a browser.
#include "verbs.h"

#include "follow.h"
#include "recording.h"
#include "report.h"
#include "server.h"
#include "shown.h"
#include "side.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <optional>
#include <spawn.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vordascope
{

namespace
{

// The input of a follower. What ends or breaks is told on standard error.
class Source
{
public:
    Source(const std::string &file, std::vector<Label> labels, Follower &follower)
        : follower_(follower), labels_(std::move(labels)),
          name_(is_standard_input(file) ? "standard input" : shown(file))
    {
        fd_ = is_standard_input(file) ? STDIN_FILENO : open(file.c_str(), O_RDONLY | O_CLOEXEC);
        struct stat status = {};
        if (fd_ < 0 || fstat(fd_, &status) < 0)
            complain(name_ + ": " + strerror(errno));
        else if (S_ISDIR(status.st_mode))
            complain(name_ + ": is a directory");
        else
            ready_ = true;
        grows_ = ready_ && fd_ != STDIN_FILENO && S_ISREG(status.st_mode);
        begin();
    }
    ~Source()
    {
        if (fd_ > STDERR_FILENO)
            close(fd_);
    }
    Source(const Source &) = delete;
    Source &operator=(const Source &) = delete;

    bool ready() const { return ready_; }
    int fd() const { return fd_; }
    const std::string &name() const { return name_; }

    // What is read goes there, too.
    void record(Recording &recording) { recording_ = &recording; }

    // Reads once, without waiting where something can be read.
    Server::Found look()
    {
        char *const room = reader_->room(Reader::PIECE);
        const ssize_t size = read(fd_, room, Reader::PIECE);
        if (size > 0) {
            if (recording_ != nullptr)
                recording_->put({room, static_cast<size_t>(size)});
            reader_->fill(static_cast<size_t>(size));
            take();
            return Server::Found::bytes;
        }
        if (size < 0 && (errno == EINTR || errno == EAGAIN))
            return Server::Found::nothing_yet;
        if (size < 0)
            complain(name_ + ": " + strerror(errno));
        else if (grows_)
            return begin_anew() ? Server::Found::bytes : Server::Found::nothing_yet;
        reader_->end();
        take();
        follower_.end();
        return Server::Found::end;
    }

private:
    void begin()
    {
        reader_.emplace();
        for (const Label &label : labels_)
            reader_->add_label(label);
    }

    void take()
    {
        std::optional<uint64_t> newest;
        while (const Snapshot *snapshot = reader_->next()) {
            follower_.add(*snapshot);
            if (snapshot->indexed && reader_->plain())
                newest = snapshot->at;
        }
        if (recording_ != nullptr)
            recording_->reached(newest);
    }

    // A file that is shorter than what has been read of it has been written anew.
    bool begin_anew()
    {
        struct stat status;
        if (fstat(fd_, &status) < 0 || status.st_size >= lseek(fd_, 0, SEEK_CUR))
            return false;
        reader_->end();
        take();
        begin();
        if (recording_ != nullptr)
            recording_->begin();
        return lseek(fd_, 0, SEEK_SET) == 0;
    }

    Follower &follower_;
    const std::vector<Label> labels_;
    Recording *recording_ = nullptr;
    std::string name_;
    int fd_ = -1;
    bool ready_ = false;
    bool grows_ = false;
    std::optional<Reader> reader_;
};

// The desktop's own program that opens an address; nullptr without a desktop.
const char *opener()
{
#ifdef __APPLE__
    return "open";
#else
    const char *const display = getenv("DISPLAY");
    const char *const wayland = getenv("WAYLAND_DISPLAY");
    const bool desktop =
        (display != nullptr && *display != '\0') || (wayland != nullptr && *wayland != '\0');
    return desktop ? "xdg-open" : nullptr;
#endif
}

// Starts it, apart from this program's input, output and signals. Returns its process, 0 when it could
// not be started.
pid_t open_browser(const char *program, const std::string &address)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t usual;
    sigemptyset(&usual);
    sigaddset(&usual, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &usual);
    // Ctrl-C ends this program, not a browser that has been started by it.
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF);
    std::string name = program;
    std::string argument = address;
    char *argv[] = {name.data(), argument.data(), nullptr};
    pid_t pid;
    const int error = posix_spawnp(&pid, program, &actions, &attributes, argv, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return error == 0 ? pid : 0;
}

void tell_how_to_open(uint16_t port)
{
    char name[256] = "";
    gethostname(name, sizeof(name) - 1);
    const std::string number = std::to_string(port);
    complain("open that address in a browser, on another machine after:");
    complain("ssh -L " + number + ":127.0.0.1:" + number + ' ' + name);
}

// Prints the address and opens it where there is a desktop.
void tell_address(Server &server, const LiveOptions &options)
{
    Output output;
    output.write(server.address() + '\n');
    output.close();
    const uint16_t port = server.port();
    const char *const program = options.no_browser ? nullptr : opener();
    const pid_t browser = program != nullptr ? open_browser(program, server.address()) : 0;
    if (program != nullptr && browser == 0)
        complain(std::string(program) + " could not be started");
    if (browser == 0)
        return tell_how_to_open(port);
    server.await(browser, [program, port](int status) {
        if (status == 0)
            return;
        complain(std::string(program) + " failed");
        tell_how_to_open(port);
    });
}

// Where each `live` of this user leaves its address for `mark`: a folder of the user's own.
std::string folder_of_addresses()
{
    const char *const runtime = getenv("XDG_RUNTIME_DIR");
    const bool given = runtime != nullptr && *runtime == '/';
    return given ? std::string(runtime) + "/vordascope"
                 : "/tmp/vordascope-" + std::to_string(getuid());
}

// Whether the folder is there, belongs to this user and is open to nobody else.
bool is_own(const std::string &folder)
{
    struct stat status;
    return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == getuid() && (status.st_mode & 077) == 0;
}

// The address, in a file as long as this lives.
class PostedAddress
{
public:
    explicit PostedAddress(const std::string &address)
    {
        const std::string folder = folder_of_addresses();
        mkdir(folder.c_str(), 0700);
        if (!is_own(folder))
            return;
        const std::string path = folder + '/' + std::to_string(getpid());
        unlink(path.c_str());
        const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd < 0)
            return;
        path_ = path;
        const ssize_t written = ::write(fd, address.data(), address.size());
        close(fd);
        if (written != static_cast<ssize_t>(address.size()))
            unlink(path.c_str());
    }
    ~PostedAddress()
    {
        if (!path_.empty())
            unlink(path_.c_str());
    }
    PostedAddress(const PostedAddress &) = delete;
    PostedAddress &operator=(const PostedAddress &) = delete;

private:
    std::string path_;
};

// The addresses that are posted, the newest first.
std::vector<std::string> posted_addresses()
{
    namespace fs = std::filesystem;
    const std::string folder = folder_of_addresses();
    if (!is_own(folder))
        return {};
    std::vector<std::pair<fs::file_time_type, std::string>> found;
    std::error_code error;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder, error)) {
        std::string address;
        if (std::getline(std::ifstream(entry.path()), address))
            found.emplace_back(entry.last_write_time(error), address);
    }
    std::sort(found.rbegin(), found.rend());
    std::vector<std::string> addresses;
    addresses.reserve(found.size());
    for (auto &[time, address] : found)
        addresses.push_back(std::move(address));
    return addresses;
}

// Whether the recording would overwrite what is read, which has been told.
bool overwrites(const LiveOptions &options)
{
    if (options.out.empty())
        return false;
    for (const std::string &file : {options.file, Side(options.reference).file()}) {
        if (file.empty() || !same_file(file, options.out))
            continue;
        complain((is_standard_input(file) ? "standard input" : file) +
                 ": the recording would overwrite this capture");
        return true;
    }
    return false;
}

} // namespace

int live(const LiveOptions &options)
{
    const std::string page = live_page(empty_page());
    if (page.empty()) {
        complain(
            "this vordascope was built without the page; configuring it says what was missing");
        return TROUBLE;
    }
    if (overwrites(options))
        return TROUBLE;
    Follower follower(options.keep);
    if (!options.reference.empty()) {
        Side reference(options.reference);
        if (!reference.read())
            return TROUBLE;
        follower.hold_against(reference.name(), reference.snapshot());
    }
    Source source(options.file, read_labels(options.labels), follower);
    if (!source.ready())
        return TROUBLE;
    follower.begin(source.name());

    std::string error;
    Server *publisher = nullptr;
    std::optional<Recording> recording;
    const auto publish = [&] {
        const std::string news = follower.news();
        if (!news.empty())
            publisher->publish(news);
    };
    Server server({page, [&] { return follower.state(); },
                   [&](const std::string &text) {
                       follower.mark(text);
                       if (recording)
                           recording->mark(text);
                       publish();
                   }},
                  options.port, error);
    if (!error.empty()) {
        complain(options.port == 0 ? error
                                   : "port " + std::to_string(options.port) + ": " + error +
                                         "; without --port a free one is taken");
        return TROUBLE;
    }
    publisher = &server;
    if (!options.out.empty()) {
        recording.emplace(options.out);
        if (recording->failed())
            return TROUBLE;
        source.record(*recording);
    }
    const PostedAddress posted(server.address());
    tell_address(server, options);
    server.watch(source.fd(), [&] {
        const Server::Found found = source.look();
        if (found == Server::Found::end)
            server.finish();
        else
            publish();
        if (found == Server::Found::end)
            complain(source.name() + " has ended after " +
                     plural(follower.snapshots(), "snapshot") +
                     "; the page stays until this program is ended");
        return found;
    });
    server.run([&] { follower.end(); });
    return recording && !recording->close() ? TROUBLE : YES;
}

int mark(const MarkOptions &options)
{
    std::string text;
    for (const std::string &word : options.words)
        text += (text.empty() ? "" : " ") + word;
    for (const std::string &address : posted_addresses())
        if (request_mark(address, text))
            return YES;
    complain("no vordascope live of this user notes anything");
    return TROUBLE;
}

} // namespace vordascope
