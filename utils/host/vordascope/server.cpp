// The server, by Boost's Asio and Beast.
#include "server.h"

#include <algorithm>
#include <boost/asio/buffer.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <cctype>
#include <charconv>
#include <chrono>
#include <csignal>
#include <deque>
#include <fcntl.h>
#include <optional>
#include <set>
#include <sys/random.h>
#include <sys/wait.h>

namespace asio = boost::asio;
namespace http = boost::beast::http;
using asio::ip::tcp;
using boost::system::error_code;

namespace vordascope
{

namespace
{

constexpr size_t TOKEN_BYTES = 20;
constexpr std::string_view HEX_DIGITS = "0123456789abcdef";
constexpr uint32_t REQUEST_BYTES = 8192;
constexpr std::chrono::seconds REQUEST_TIME(10);
constexpr std::chrono::milliseconds ENDING_TIME(1000);
constexpr std::chrono::milliseconds WHOLE_STATE_PAUSE(500); // for a page that cannot keep up
constexpr std::chrono::milliseconds FILE_PAUSE(40);         // until a file is looked at again

// What is common to all answers. The page's own policy is part of the page.
constexpr char HEADERS[] = "Cache-Control: no-store\r\n"
                           "Connection: close\r\n"
                           "Cross-Origin-Opener-Policy: same-origin\r\n"
                           "Cross-Origin-Resource-Policy: same-origin\r\n"
                           "Referrer-Policy: no-referrer\r\n"
                           "X-Content-Type-Options: nosniff\r\n"
                           "X-Frame-Options: DENY\r\n";

using Text = std::shared_ptr<const std::string>;
using Request = http::request_parser<http::empty_body>;

std::string answer(const char *status, const char *type, const std::string &body,
                   const char *more = "")
{
    return std::string("HTTP/1.1 ") + status + "\r\nContent-Type: " + type +
           "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" + HEADERS + more + "\r\n" +
           body;
}

std::string refusal(const char *status, const char *more = "")
{
    return answer(status, "text/plain", std::string(status) + '\n', more);
}

// JSON has no line end but between its members, where it needs none.
Text event(const char *name, std::string json)
{
    for (char &c : json)
        if (c == '\n')
            c = ' ';
    return std::make_shared<const std::string>(std::string("event: ") + name + "\ndata: " + json +
                                               "\n\n");
}

// A token of 160 bits; empty when the system has none.
std::string new_token()
{
    unsigned char bytes[TOKEN_BYTES];
    if (getrandom(bytes, sizeof(bytes), 0) != static_cast<ssize_t>(sizeof(bytes)))
        return "";
    std::string token;
    for (const unsigned char byte : bytes) {
        token += HEX_DIGITS[byte >> 4];
        token += HEX_DIGITS[byte & 15];
    }
    return token;
}

// In a time that does not depend on where they differ.
bool same(std::string_view a, std::string_view b)
{
    unsigned difference = a.size() != b.size();
    for (size_t i = 0; i < std::min(a.size(), b.size()); i++)
        difference |= a[i] != b[i] ? 1U : 0U;
    return difference == 0;
}

int hex_digit(char c)
{
    const size_t at =
        HEX_DIGITS.find(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

// What stands behind "text=" of a query, on one line; nothing when it is no such text.
std::optional<std::string> text_of_query(std::string_view query)
{
    constexpr std::string_view TEXT = "text=";
    if (!query.starts_with(TEXT))
        return {};
    std::string text;
    for (size_t i = TEXT.size(); i < query.size() && text.size() < MARK_BYTES; i++) {
        char c = query[i];
        if (c == '%') {
            const int high = i + 1 < query.size() ? hex_digit(query[i + 1]) : -1;
            const int low = i + 2 < query.size() ? hex_digit(query[i + 2]) : -1;
            if (high < 0 || low < 0)
                return {};
            c = static_cast<char>(high * 16 + low);
            i += 2;
        }
        text += static_cast<unsigned char>(c) < ' ' || c == '\x7F' ? ' ' : c;
    }
    if (text.find_first_not_of(' ') == std::string::npos)
        return {};
    return text;
}

} // namespace

struct Server::State {
    // Somebody who asks.
    struct Connection : std::enable_shared_from_this<Connection> {
        Connection(State &state, tcp::socket taken)
            : server(state), socket(std::move(taken)), timer(state.io), buffer(REQUEST_BYTES)
        {
        }

        State &server;
        tcp::socket socket;
        asio::steady_timer timer;
        boost::beast::flat_buffer buffer;
        Request request;
        // Of a page that follows:
        bool follows = false;
        bool writing = false;
        bool wants_state = false;
        std::chrono::steady_clock::time_point next_state;
        std::deque<Text> waiting;
        char ignored[64] = {};

        void start();
        void reply(std::string text);
        void follow();
        void tell(const Text &text);
        void write_next();
        void end();
    };

    explicit State(Site what) : site(std::move(what)) {}

    void accept();
    std::string respond(const http::request<http::empty_body> &request, bool &follows);
    bool is_ours(const http::request<http::empty_body> &request) const;
    void stop_when_told();
    void look_when_readable();
    void look_again(std::chrono::milliseconds pause);
    void look_at_child();

    asio::io_context io{1}; // ends last: what waits holds connections
    Site site;
    tcp::acceptor acceptor{io};
    asio::signal_set signals{io};
    asio::signal_set child_signals{io};
    pid_t child = 0;
    std::function<void(int status)> child_ended;
    std::optional<asio::posix::stream_descriptor> input;
    asio::steady_timer input_timer{io};
    std::function<Found()> look;
    std::set<std::shared_ptr<Connection>> connections;
    std::string token, host, address;
    asio::steady_timer ending_timer{io};
    bool ending = false;
};

void Server::State::accept()
{
    acceptor.async_accept([this](error_code error, tcp::socket socket) {
        if (error == asio::error::operation_aborted)
            return;
        if (!error && connections.size() < CONNECTIONS_MOST) {
            socket.set_option(tcp::no_delay(true), error);
            const auto connection = std::make_shared<Connection>(*this, std::move(socket));
            connections.insert(connection);
            connection->start();
        }
        accept();
    });
}

void Server::State::Connection::start()
{
    request.header_limit(REQUEST_BYTES);
    request.body_limit(0);
    timer.expires_after(REQUEST_TIME);
    timer.async_wait([self = shared_from_this()](error_code error) {
        if (!error)
            self->end();
    });
    http::async_read_header(
        socket, buffer, request, [self = shared_from_this()](error_code error, size_t) {
            if (error == http::error::header_limit || error == http::error::buffer_overflow)
                return self->reply(refusal("431 Request Header Fields Too Large"));
            if (error.category() == make_error_code(http::error::bad_method).category() &&
                error != http::error::end_of_stream && error != http::error::partial_message)
                return self->reply(refusal("400 Bad Request"));
            if (error)
                return self->end();
            const bool has_body =
                self->request.chunked() || self->request.content_length().value_or(0) > 0;
            if (has_body)
                return self->reply(refusal("400 Bad Request"));
            std::string text = self->server.respond(self->request.get(), self->follows);
            if (self->follows)
                self->follow();
            self->reply(std::move(text));
        });
}

// Whether a request comes from a page of this server, or from somebody who typed its address.
bool Server::State::is_ours(const http::request<http::empty_body> &request) const
{
    const auto is = [&request](const char *name, std::string_view a, std::string_view b) {
        const auto found = request.find(name);
        if (found == request.end())
            return true;
        const std::string_view value(found->value().data(), found->value().size());
        return request.count(name) == 1 && (value == a || value == b);
    };
    return request.count(http::field::host) == 1 && is("Host", host, host) &&
           is("Origin", "http://" + host, "http://" + host) &&
           is("Sec-Fetch-Site", "same-origin", "none");
}

std::string Server::State::respond(const http::request<http::empty_body> &request, bool &follows)
{
    if (!is_ours(request))
        return refusal("403 Forbidden");
    if (request.method() != http::verb::get)
        return refusal("405 Method Not Allowed", "Allow: GET\r\n");
    const std::string_view target(request.target().data(), request.target().size());
    const std::string ours = '/' + token + '/';
    if (!same(target.substr(0, ours.size()), ours))
        return refusal("404 Not Found");
    const std::string_view route = target.substr(ours.size());
    constexpr std::string_view MARK = "mark?";
    if (route.empty())
        return answer("200 OK", "text/html; charset=utf-8", site.page);
    if (route == "events") {
        follows = true;
        return std::string("HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\n") + HEADERS +
               "\r\nretry: 1000\n\n";
    }
    if (route.starts_with(MARK)) {
        const std::optional<std::string> text = text_of_query(route.substr(MARK.size()));
        if (!text)
            return refusal("400 Bad Request");
        site.mark(*text);
        return answer("200 OK", "text/plain", "");
    }
    return refusal("404 Not Found");
}

// Sends an answer, or the head of a stream of events.
void Server::State::Connection::reply(std::string text)
{
    writing = true;
    const auto kept = std::make_shared<const std::string>(std::move(text));
    asio::async_write(socket, asio::buffer(*kept),
                      [self = shared_from_this(), kept](error_code error, size_t) {
                          self->writing = false;
                          if (error || !self->follows)
                              return self->end();
                          self->write_next();
                      });
}

void Server::State::Connection::follow()
{
    timer.cancel();
    wants_state = true;
    // Nothing more comes from a page; that this ends says that the page has left.
    socket.async_read_some(asio::buffer(ignored),
                           [self = shared_from_this()](error_code, size_t) { self->end(); });
}

void Server::State::Connection::tell(const Text &text)
{
    if (!follows || wants_state)
        return;
    if (waiting.size() == EVENTS_WAITING) {
        waiting.clear();
        wants_state = true;
    } else {
        waiting.push_back(text);
    }
    write_next();
}

// What is called when it is written comes later, and not from here.
// NOLINTBEGIN(misc-no-recursion)
void Server::State::Connection::write_next()
{
    if (writing || !socket.is_open() || (waiting.empty() && !wants_state))
        return;
    const auto now = std::chrono::steady_clock::now();
    if (wants_state && now < next_state) {
        timer.expires_at(next_state);
        timer.async_wait([self = shared_from_this()](error_code error) {
            if (!error)
                self->write_next();
        });
        return;
    }
    Text text;
    if (wants_state) {
        text = event("state", server.site.state());
        wants_state = false;
        next_state = now + WHOLE_STATE_PAUSE;
    } else {
        text = waiting.front();
        waiting.pop_front();
    }
    writing = true;
    asio::async_write(socket, asio::buffer(*text),
                      [self = shared_from_this(), text](error_code error, size_t) {
                          self->writing = false;
                          if (error)
                              return self->end();
                          self->write_next();
                          self->server.stop_when_told();
                      });
}
// NOLINTEND(misc-no-recursion)

void Server::State::Connection::end()
{
    error_code ignored_error;
    timer.cancel();
    socket.shutdown(tcp::socket::shutdown_both, ignored_error);
    socket.close(ignored_error);
    server.connections.erase(shared_from_this());
}

void Server::State::look_when_readable()
{
    input->async_wait(asio::posix::stream_descriptor::wait_read, [this](error_code error) {
        if (error == asio::error::operation_aborted)
            return;
        if (error) // a file, of which nobody can tell when there is more
            look_again(std::chrono::milliseconds(0));
        else if (look() != Found::end)
            look_when_readable();
    });
}

void Server::State::look_again(std::chrono::milliseconds pause)
{
    input_timer.expires_after(pause);
    input_timer.async_wait([this](error_code error) {
        if (error)
            return;
        const Found found = look();
        if (found != Found::end)
            look_again(found == Found::bytes ? std::chrono::milliseconds(0) : FILE_PAUSE);
    });
}

void Server::State::look_at_child()
{
    int status;
    if (waitpid(child, &status, WNOHANG) == child)
        return child_ended(status);
    child_signals.async_wait([this](error_code error, int) {
        if (!error)
            look_at_child();
    });
}

Server::Server(Site site, uint16_t port, std::string &error)
    : state_(std::make_unique<State>(std::move(site)))
{
    State &state = *state_;
    error_code code;
    const tcp::endpoint endpoint(asio::ip::address_v4::loopback(), port);
    state.acceptor.open(endpoint.protocol(), code);
    // The browser that is started must not keep the port when this has ended.
    if (!code)
        fcntl(state.acceptor.native_handle(), F_SETFD, FD_CLOEXEC);
    if (!code)
        state.acceptor.set_option(tcp::acceptor::reuse_address(true), code);
    if (!code)
        state.acceptor.bind(endpoint, code);
    if (!code)
        state.acceptor.listen(static_cast<int>(CONNECTIONS_MOST), code);
    if (!code)
        state.token = new_token();
    if (code || state.token.empty()) {
        error = code ? code.message() : "the system has no random numbers";
        return;
    }
    state.host = "127.0.0.1:" + std::to_string(this->port());
    state.address = "http://" + state.host + '/' + state.token + '/';
    state.accept();
}

Server::~Server() = default;

const std::string &Server::address() const
{
    return state_->address;
}

uint16_t Server::port() const
{
    error_code ignored;
    return state_->acceptor.local_endpoint(ignored).port();
}

void Server::publish(const std::string &json)
{
    if (state_->connections.empty())
        return;
    const Text text = event("news", json);
    const auto connections = state_->connections; // which telling may end
    for (const auto &connection : connections)
        connection->tell(text);
}

void Server::watch(int fd, std::function<Found()> look)
{
    state_->look = std::move(look);
    error_code error;
    state_->input.emplace(state_->io);
    state_->input->assign(fd, error);
    if (error)
        state_->look_again(std::chrono::milliseconds(0));
    else
        state_->look_when_readable();
}

void Server::finish()
{
    const auto connections = state_->connections; // which telling may end
    for (const auto &connection : connections) {
        if (!connection->follows)
            continue;
        connection->waiting.clear();
        connection->wants_state = true;
        connection->next_state = {};
        connection->write_next();
    }
}

void Server::await(pid_t child, std::function<void(int status)> ended)
{
    error_code ignored;
    state_->child = child;
    state_->child_ended = std::move(ended);
    state_->child_signals.add(SIGCHLD, ignored);
    state_->look_at_child();
}

void Server::run(const std::function<void()> &ending)
{
    State &state = *state_;
    error_code ignored;
    state.signals.add(SIGINT, ignored);
    state.signals.add(SIGTERM, ignored);
    state.signals.async_wait([&](error_code, int) {
        state.acceptor.close(ignored);
        state.input_timer.cancel();
        if (state.input)
            state.input->cancel(ignored);
        state.ending = true;
        ending();
        finish();
        state.stop_when_told();
        state.ending_timer.expires_after(ENDING_TIME);
        state.ending_timer.async_wait([&state](error_code) { state.io.stop(); });
    });
    state.io.run();
    if (state.input)
        state.input->release(); // its owner closes it
}

// Ends the work when no page takes its last state any more.
void Server::State::stop_when_told()
{
    const bool busy = std::any_of(connections.begin(), connections.end(),
                                  [](const auto &c) { return c->writing || c->wants_state; });
    if (ending && !busy)
        io.stop();
}

bool request_mark(const std::string &address, const std::string &text)
{
    constexpr std::string_view SCHEME = "http://";
    const size_t path = address.find('/', SCHEME.size());
    const size_t colon = address.find(':', SCHEME.size());
    if (!address.starts_with(SCHEME) || path == std::string::npos || colon > path)
        return false;
    unsigned port = 0;
    std::from_chars(address.data() + colon + 1, address.data() + path, port);
    std::string request = "GET " + address.substr(path) + "mark?text=";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        request += '%';
        request += HEX_DIGITS[byte >> 4];
        request += HEX_DIGITS[byte & 15];
    }
    request +=
        " HTTP/1.1\r\nHost: " + address.substr(SCHEME.size(), path - SCHEME.size()) + "\r\n\r\n";

    asio::io_context io(1);
    tcp::socket socket(io);
    error_code error;
    socket.connect({asio::ip::address_v4::loopback(), static_cast<uint16_t>(port)}, error);
    if (!error)
        asio::write(socket, asio::buffer(request), error);
    std::string reply;
    if (!error)
        asio::read(socket, asio::dynamic_buffer(reply), error);
    return reply.starts_with("HTTP/1.1 200 ");
}

} // namespace vordascope
