// The web server of `vordascope live`, for the pages of one person on this machine.
//
// One thread: run() waits for input, requests and signals, and everything else is called from it.
// It listens on 127.0.0.1 alone. Its address holds a token that nobody can guess; a request must
// come with exactly its own Host, as GET, without a body, small and soon. There are three routes:
//
//     /TOKEN/             the page
//     /TOKEN/events       server-sent events: "state", the whole state, and then "news"
//     /TOKEN/mark?text=   notes something
//
// A page that does not read slows nobody: after EVENTS_WAITING events it gets one whole state.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace vordascope
{

constexpr size_t EVENTS_WAITING = 3;
constexpr size_t CONNECTIONS_MOST = 32;
constexpr size_t MARK_BYTES = 500;

class Server
{
public:
    struct Site {
        std::string page;                                  // HTML
        std::function<std::string()> state;                // the whole state, as JSON
        std::function<void(const std::string &text)> mark; // somebody notes a text
    };

    // Listens, on a port of the system's choice when `port` is 0. `error` says what went wrong;
    // it is empty when nothing did.
    Server(Site site, uint16_t port, std::string &error);
    ~Server();
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    // "http://127.0.0.1:40123/4f…/"
    const std::string &address() const;
    uint16_t port() const;

    // Sends news, as JSON, to every page that is connected.
    void publish(const std::string &json);

    // What a look at the input has found.
    enum class Found : uint8_t { bytes, nothing_yet, end };

    // Calls `look` whenever there may be something to read, until it has found the end.
    void watch(int fd, std::function<Found()> look);

    // Sends the whole state to every page that is connected, its last one.
    void finish();

    // Calls `ended` when this child of the program has ended, with what waitpid() says of it.
    void await(pid_t child, std::function<void(int status)> ended);

    // Works until SIGINT or SIGTERM, calls `ending`, and finishes pages that can take it at once.
    void run(const std::function<void()> &ending);

private:
    struct State;
    std::unique_ptr<State> state_;
};

// Asks the server at an address to note a text. Returns whether it did.
bool request_mark(const std::string &address, const std::string &text);

} // namespace vordascope
