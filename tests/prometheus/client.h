#pragma once

// A client of the page that can also misbehave.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <string>

namespace test {

/// A connection to a port on loopback, for the time of a scope.
class Client {
public:
    explicit Client(unsigned port) : m_socket(socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        m_connected = connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0;
        timeval patience{20, 0};
        setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof(patience));
        setsockopt(m_socket, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof(patience));
    }
    ~Client() { close(m_socket); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    bool isConnected() const { return m_connected; }
    bool send(const std::string& text) const
    {
        return ::send(m_socket, text.data(), text.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(text.size());
    }
    /// What comes until the other side closes.
    std::string receive() const
    {
        std::string text;
        char bytes[65536];
        for (ssize_t count = 0; (count = recv(m_socket, bytes, sizeof(bytes), 0)) > 0;)
            text.append(bytes, static_cast<std::size_t>(count));
        return text;
    }

private:
    int m_socket;
    bool m_connected;
};

inline std::string ask(unsigned port, const std::string& request)
{
    const Client client(port);
    client.send(request + "\r\nHost: test\r\n\r\n");
    return client.receive();
}

/// The page without its head.
inline std::string scrape(unsigned port)
{
    const std::string answer = ask(port, "GET /metrics HTTP/1.1");
    return answer.substr(std::min(answer.find("\r\n\r\n"), answer.size() - 4) + 4);
}

} // namespace test
