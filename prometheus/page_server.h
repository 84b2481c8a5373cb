#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

struct mg_connection;
struct mg_context;

namespace statistics::prometheus_export {

/// Serves one page over HTTP with the web server that prometheus-cpp is made with, within bounds that its
/// `Exposer` doesn't set: requests have a size and a time, pages a time, and connections aren't kept.
class PageServer {
public:
    using Parts = std::vector<std::shared_ptr<const std::string>>;

    /// Listens. `page` runs on threads of the server, several at a time. Throws as `PrometheusExporter` does.
    PageServer(const std::string& address, std::string path, std::function<Parts()> page);
    /// Stops listening and waits for the threads. In a forked child, which has none of them, nothing happens.
    ~PageServer();
    PageServer(const PageServer&) = delete;
    PageServer& operator=(const PageServer&) = delete;

    unsigned port() const;

private:
    void listen(const std::string& text);
    void knockWhileStopping(const std::atomic<bool>& stopped) const;
    void answer(mg_connection* connection) const;
    void sendPage(mg_connection* connection, bool withBody) const;

    static int onRequest(mg_connection* connection);
    static int onMessage(const mg_connection* connection, const char* message);

    const std::string m_path;
    const std::function<Parts()> m_page;
    const long m_process;
    std::string m_failure; ///< what the server said first about not starting
    std::string m_host;
    mg_context* m_context = nullptr;
};

} // namespace statistics::prometheus_export
