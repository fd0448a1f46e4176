#include "core/events/registration.h"

#include <algorithm>
#include <cstring>

#include "core/ini_file.h"
#include "core/store/record_format.h"
#include "core/store/text_field.h"
#include "resources/text_ids.h"

namespace core {
namespace {

constexpr std::size_t kMostHost = 256;
constexpr std::size_t kMostSetting = 259;

std::uint32_t CodeOf(platform::TcpResult result) {
  switch (result) {
    case platform::TcpResult::kUnknownHost:
      return kHostNotFound;
    case platform::TcpResult::kNoTimeouts:
      return kNoConnectionSetup;
    case platform::TcpResult::kNoSocket:
      return kNoConnectionSocket;
    case platform::TcpResult::kNotConnected:
      return kNoConnection;
    case platform::TcpResult::kTransferFailed:
    case platform::TcpResult::kDone:
      break;
  }
  return kExchangeFailed;
}

}  // namespace

RegistrationRequest MakeRegistrationRequest(std::string_view email, std::string_view secondText) {
  RegistrationRequest request;
  request.type = kRegisterMessage;
  WriteText(request.email, email);
  WriteText(request.secondText, secondText);
  return request;
}

std::uint32_t StatusOfAnswer(std::string_view bytes) {
  std::uint32_t status = 0xFFFFFFFF;
  std::memcpy(&status, bytes.data(), bytes.size() < sizeof status ? bytes.size() : sizeof status);
  return status;
}

int RegistrationTextId(std::uint32_t status) {
  if (status == kRegistered) return text::kRegistered;
  return status == kAddressTaken ? text::kAddressTaken : text::kCannotConnect;
}

std::uint16_t EventServer::PortNumber() const {
  std::uint32_t number = 0;
  for (const char c : port) {
    if (c < '0' || c > '9') break;
    number =
        number * 10 + static_cast<std::uint32_t>(c - '0');  // what does not fit wraps; the low bits count
  }
  return static_cast<std::uint16_t>(number);
}

EventServer ReadEventServer() {
  const IniFile settings("Daybrix.ini");
  EventServer server;
  // Without a value they are empty.
  static_cast<void>(settings.ReadString("eServer", "server", server.address));
  static_cast<void>(settings.ReadString("eServer", "port", server.port));
  server.address.resize(std::min(server.address.size(), kMostSetting));
  server.port.resize(std::min(server.port.size(), kMostSetting));
  return server;
}

std::uint32_t RegisterOnServer(const std::function<void()>& waiting, const RegistrationLimits& limits) {
  const EventServer server = ReadEventServer();
  const RegistrationRequest message = MakeRegistrationRequest(kDefaultOwnerEmail, "");
  platform::TcpRequest request;
  request.host = server.address.substr(0, kMostHost);
  request.port = server.PortNumber();
  request.bytes = {reinterpret_cast<const char*>(&message), sizeof message};
  request.answerSize = sizeof(std::uint32_t);
  request.sendMs = limits.sendMs;
  request.receiveMs = limits.receiveMs;
  request.waiting = waiting;
  std::string answer;
  const platform::TcpResult result = platform::ExchangeOverTcp(request, answer);
  return result == platform::TcpResult::kDone ? StatusOfAnswer(answer) : CodeOf(result);
}

}  // namespace core
