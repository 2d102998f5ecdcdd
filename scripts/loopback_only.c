// Qt's VNC platform listens on every address and knows neither a password nor an option for it. scripts/start preloads
// this, so that the window can be looked at from this machine only.
#define _GNU_SOURCE
#include <arpa/inet.h>
#include <dlfcn.h>
#include <netinet/in.h>
#include <sys/socket.h>

int bind(int socket, const struct sockaddr* address, socklen_t length) {
  int (*real_bind)(int, const struct sockaddr*, socklen_t) = dlsym(RTLD_NEXT, "bind");
  if (address->sa_family == AF_INET6) {
    struct sockaddr_in6 loopback = *(const struct sockaddr_in6*)(const void*)address;
    inet_pton(AF_INET6, "::ffff:127.0.0.1", &loopback.sin6_addr);
    return real_bind(socket, (const struct sockaddr*)&loopback, sizeof loopback);
  }
  if (address->sa_family == AF_INET) {
    struct sockaddr_in loopback = *(const struct sockaddr_in*)(const void*)address;
    loopback.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return real_bind(socket, (const struct sockaddr*)&loopback, sizeof loopback);
  }
  return real_bind(socket, address, length);
}
