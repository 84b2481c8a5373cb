#include "page_server.h"

#include <civetweb.h>

#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <exception>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>

namespace statistics::prometheus_export {

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kLoopback = "127.0.0.1";
constexpr std::chrono::seconds kPageTime{10}; ///< servers give up a scrape after ten by default
constexpr std::size_t kChunk = 65536;         ///< bytes, sent between two looks at the clock

/// A hundred clients that send nothing hold the threads for six seconds: a scrape behind them still arrives.
constexpr const char* kThreads = "16";
constexpr const char* kRequestTime = "1000"; ///< milliseconds, also for a client that takes no more bytes
constexpr const char* kRequestSize = "8192"; ///< bytes

struct Address {
    std::string host;
    std::string port;
};

/// Only what names one address: the web server would take lists and flags too.
Address parseAddress(const std::string& text)
{
    const std::size_t colon = text.rfind(':');
    Address address{colon == std::string::npos ? "" : text.substr(0, colon),
                    colon == std::string::npos ? text : text.substr(colon + 1)};
    const bool isPort = !address.port.empty() && address.port.size() <= 5 &&
                        address.port.find_first_not_of("0123456789") == std::string::npos;
    if (!isPort || std::stoul(address.port) > 65535 ||
        address.host.find_first_of(", :+") != std::string::npos)
        throw std::invalid_argument("\"" + text + "\" is no address of the form host:port, IPv4 or a name");
    if (address.host.empty())
        address.host = kLoopback;
    return address;
}

/// Keeps the host's signals away from threads that are started meanwhile.
class [[nodiscard]] SignalsBlocked {
public:
    SignalsBlocked()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t m_before;
};

void sendHead(mg_connection* connection, const char* status, std::size_t length)
{
    mg_printf(connection,
              "HTTP/1.1 %s\r\nContent-Type: text/plain; version=0.0.4; charset=utf-8\r\n"
              "Content-Length: %zu\r\nConnection: close\r\n\r\n",
              status, length);
}

void sendStatus(mg_connection* connection, const char* status)
{
    const std::string_view text = status;
    sendHead(connection, status, text.size() + 1);
    mg_printf(connection, "%s\n", status);
}

/// False once the client is gone or its time is over.
bool send(mg_connection* connection, std::string_view text, Clock::time_point end)
{
    while (!text.empty()) {
        const std::string_view chunk = text.substr(0, kChunk);
        if (Clock::now() > end ||
            mg_write(connection, chunk.data(), chunk.size()) < static_cast<int>(chunk.size()))
            return false;
        text.remove_prefix(chunk.size());
    }
    return true;
}

} // namespace

PageServer::PageServer(const std::string& address, std::string path, std::function<Parts()> page)
    : m_path(std::move(path)), m_page(std::move(page)), m_process(getpid())
{
    if (m_path.empty() || m_path[0] != '/')
        throw std::invalid_argument("\"" + m_path + R"(" is no path: it doesn't begin with "/")");
    listen(address);
}

void PageServer::listen(const std::string& text)
{
    const Address address = parseAddress(text);
    m_host = address.host == "0.0.0.0" ? kLoopback : address.host;
    const std::string listening = address.host + ":" + address.port;
    // clang-format off
    const char* options[] = {"listening_ports", listening.c_str(), "num_threads", kThreads,
                             "request_timeout_ms", kRequestTime, "max_request_size", kRequestSize,
                             "enable_keep_alive", "no", nullptr};
    // clang-format on
    mg_callbacks callbacks{};
    callbacks.begin_request = &PageServer::onRequest;
    callbacks.log_message = &PageServer::onMessage;
    mg_init_data init{&callbacks, this, options};
    mg_error_data error{};
    const SignalsBlocked guard;
    m_context = mg_start2(&init, &error);
    if (!m_context)
        throw std::runtime_error("No metrics on " + listening + ": " + m_failure);
}

PageServer::~PageServer()
{
    if (m_process != getpid())
        return;
    std::atomic<bool> stopped{false};
    std::thread knocking([&] { knockWhileStopping(stopped); });
    mg_stop(m_context);
    stopped = true;
    knocking.join();
}

/// The server's listening thread looks whether it shall stop when a client comes, or every two seconds.
void PageServer::knockWhileStopping(const std::atomic<bool>& stopped) const
{
    const auto ownPort = static_cast<int>(port());
    while (!stopped) {
        if (mg_connection* client = mg_connect_client(m_host.c_str(), ownPort, 0, nullptr, 0))
            mg_close_connection(client);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

unsigned PageServer::port() const
{
    mg_server_port port{};
    mg_get_server_ports(m_context, 1, &port);
    return static_cast<unsigned>(port.port);
}

int PageServer::onRequest(mg_connection* connection)
{
    // What a client sends behind its request isn't read.
    mg_disable_connection_keep_alive(connection);
    static_cast<const PageServer*>(mg_get_user_data(mg_get_context(connection)))->answer(connection);
    return 1;
}

int PageServer::onMessage(const mg_connection* connection, const char* message)
{
    auto* server = static_cast<PageServer*>(mg_get_user_data(mg_get_context(connection)));
    // Later ones tell of clients, on several threads.
    if (server && !server->m_context && server->m_failure.empty())
        server->m_failure = message;
    return 1;
}

void PageServer::answer(mg_connection* connection) const
{
    const mg_request_info* request = mg_get_request_info(connection);
    const std::string_view method = request->request_method;
    if (!request->local_uri || request->local_uri != m_path)
        return sendStatus(connection, "404 Not Found");
    if (method != "GET" && method != "HEAD")
        return sendStatus(connection, "405 Method Not Allowed");
    try {
        sendPage(connection, method == "GET");
    } catch (const std::exception&) { // want of memory must not leave the server's thread
        sendStatus(connection, "503 Service Unavailable");
    }
}

void PageServer::sendPage(mg_connection* connection, bool withBody) const
{
    const Parts parts = m_page();
    std::size_t length = 0;
    for (const auto& part : parts)
        length += part->size();
    sendHead(connection, "200 OK", length);
    const Clock::time_point end = Clock::now() + kPageTime;
    if (withBody)
        std::all_of(parts.begin(), parts.end(),
                    [&](const auto& part) { return send(connection, *part, end); });
}

} // namespace statistics::prometheus_export
