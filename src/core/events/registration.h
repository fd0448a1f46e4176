// Registering on the event server: a request of 100 bytes, an answer of four. docs/registration.md describes
// both byte by byte. A request names nobody: it is the same for every user, made from the identity that a new
// file gets, and the server answers with a status alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/system/tcp_exchange.h"

namespace core {

#pragma pack(push, 1)

struct RegistrationRequest {
  std::uint32_t type;
  char email[64];
  char secondText[32];
};

#pragma pack(pop)

static_assert(sizeof(RegistrationRequest) == 100 && offsetof(RegistrationRequest, type) == 0);
static_assert(offsetof(RegistrationRequest, email) == 4 && offsetof(RegistrationRequest, secondText) == 68);

inline constexpr std::uint32_t kRegisterMessage = 1;

// What registering came to: the server's status word, or why there is none. A server may answer with one of
// our own numbers; that is a refusal as any other.
enum RegistrationStatus : std::uint32_t {
  kRegistered = 0,
  kAddressTaken = 1,  // an account with this address exists already
  kHostNotFound = 12,
  kNoConnectionSetup = 13,
  kNoConnectionSocket = 14,
  kNoConnection = 15,
  kExchangeFailed = 16,
};

// Each text fills its field or is followed by zeros.
RegistrationRequest MakeRegistrationRequest(std::string_view email, std::string_view secondText);

// The status word of an answer. Bytes that did not come count as 0xFF, so that a cut answer is a refusal.
std::uint32_t StatusOfAnswer(std::string_view bytes);

// The number of the text that tells the user.
int RegistrationTextId(std::uint32_t status);

// Where the event server is: section "eServer" of Daybrix.ini, which the program reads and never writes. A
// missing key is empty. The port is the number that its text begins with, 0 without one, of which the low 16
// bits count.
struct EventServer {
  std::string address;  // at most 259 characters, as is the port
  std::string port;

  std::uint16_t PortNumber() const;
};
EventServer ReadEventServer();

struct RegistrationLimits {
  int sendMs = 60000;
  int receiveMs = 60000;
};

// Registers on that server. Takes as long as the system takes to find and reach the host, and the time-outs
// after that; `waiting`, if any, is called every few moments meanwhile. Nothing is tried twice or stored.
[[nodiscard]] std::uint32_t RegisterOnServer(const std::function<void()>& waiting = nullptr,
                                             const RegistrationLimits& limits = {});

}  // namespace core
