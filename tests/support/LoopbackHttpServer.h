#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace corvane::testing {

/// What the server answers for one path.
struct HttpResponse {
    std::string body;
    int status = 200;
    /// The Content-Length sent; the body's size when absent.
    std::optional<std::size_t> declaredLength;
    /// Sends only this many bytes of the body, then drops the connection (a network that goes
    /// away mid-transfer).
    std::optional<std::size_t> cutAfter;
    /// Answers with a redirect to this address instead.
    std::string location;
};

/// A small HTTP/1.1 server on 127.0.0.1 (loopback only, an ephemeral port) that answers GET
/// requests from a table of paths, one connection at a time, on a thread of its own. Unknown
/// paths get 404.
class LoopbackHttpServer {
public:
    LoopbackHttpServer() {
        listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = 0;
        socklen_t size = sizeof address;
        if (listener < 0 || ::bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
            ::listen(listener, 16) != 0 ||
            ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
            return;
        }
        boundPort = ntohs(address.sin_port);
        worker = std::thread([this] { serve(); });
    }
    LoopbackHttpServer(const LoopbackHttpServer&) = delete;
    LoopbackHttpServer& operator=(const LoopbackHttpServer&) = delete;
    ~LoopbackHttpServer() {
        stopping = true;
        if (worker.joinable()) {
            worker.join();
        }
        if (listener >= 0) {
            ::close(listener);
        }
    }

    /// "http://127.0.0.1:<port>" followed by `path`.
    std::string url(const std::string& path) const {
        return "http://127.0.0.1:" + std::to_string(boundPort) + path;
    }

    void answer(const std::string& path, HttpResponse response) {
        std::lock_guard lock(mutex);
        routes[path] = std::move(response);
    }

    /// The paths asked for so far, in order.
    std::vector<std::string> requests() const {
        std::lock_guard lock(mutex);
        return requested;
    }

private:
    void serve() {
        while (!stopping) {
            pollfd waiting{.fd = listener, .events = POLLIN};
            if (::poll(&waiting, 1, 50) <= 0) {
                continue;
            }
            const int connection = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
            if (connection >= 0) {
                respond(connection);
                ::close(connection);
            }
        }
    }

    void respond(int connection) {
        std::string request;
        char buffer[4096];
        while (request.find("\r\n\r\n") == std::string::npos && request.size() < 65536) {
            pollfd readable{.fd = connection, .events = POLLIN};
            if (::poll(&readable, 1, 2000) <= 0) {
                return;
            }
            const ssize_t count = ::recv(connection, buffer, sizeof buffer, 0);
            if (count <= 0) {
                return;
            }
            request.append(buffer, static_cast<std::size_t>(count));
        }
        const auto pathStart = request.find(' ') + 1;
        const std::string path =
            request.substr(pathStart, request.find(' ', pathStart) - pathStart);
        HttpResponse response{.body = "not found", .status = 404};
        {
            std::lock_guard lock(mutex);
            requested.push_back(path);
            if (auto found = routes.find(path); found != routes.end()) {
                response = found->second;
            }
        }
        std::string head = "HTTP/1.1 " + std::to_string(response.status) + " X\r\n";
        if (!response.location.empty()) {
            head = "HTTP/1.1 302 Found\r\nLocation: " + response.location + "\r\n";
            response.body.clear();
        }
        head += "Content-Length: " +
                std::to_string(response.declaredLength.value_or(response.body.size())) +
                "\r\nConnection: close\r\n\r\n";
        const std::string body =
            response.cutAfter ? response.body.substr(0, *response.cutAfter) : response.body;
        sendAll(connection, head + body);
    }

    static void sendAll(int connection, const std::string& bytes) {
        std::size_t sent = 0;
        while (sent < bytes.size()) {
            const ssize_t count =
                ::send(connection, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
            if (count <= 0) {
                return;
            }
            sent += static_cast<std::size_t>(count);
        }
    }

    int listener = -1;
    int boundPort = 0;
    std::atomic<bool> stopping = false;
    mutable std::mutex mutex;
    std::map<std::string, HttpResponse> routes;
    std::vector<std::string> requested;
    std::thread worker;
};

}  // namespace corvane::testing
