// FTP address: schemes, host names and ports; names as parts of a URL.
#include "platform/ftp/ftp_address.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

struct Scheme {
  std::string_view prefix;
  FtpSecurity security;
};

constexpr Scheme schemes[] = {
    {.prefix = "ftpes://", .security = FtpSecurity::explicitTls},
    {.prefix = "ftps://", .security = FtpSecurity::implicitTls},
    {.prefix = "ftp://", .security = FtpSecurity::none},
};
constexpr Scheme plain{.prefix = "", .security = FtpSecurity::none};

bool isLetterOrDigit(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); }

const Scheme& schemeOf(std::string_view server) {
  for (const Scheme& scheme : schemes)
    if (equalIgnoringAsciiCase(server.substr(0, scheme.prefix.size()), scheme.prefix)) return scheme;
  return plain;
}

/// A name, an IPv4 number, or an IPv6 number in brackets.
bool isHost(std::string_view host) {
  const bool bracketed = host.starts_with('[') && host.ends_with(']');
  if (bracketed) host = host.substr(1, host.size() - 2);
  return !host.empty() && std::ranges::all_of(host, [bracketed](char c) {
    return isLetterOrDigit(c) || c == '.' || c == '-' || (bracketed ? c == ':' : c == '_');
  });
}

std::optional<std::uint16_t> portFrom(std::string_view text) {
  std::uint16_t port = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
  if (error != std::errc{} || end != text.data() + text.size() || port == 0) return std::nullopt;
  return port;
}

}  // namespace

std::optional<FtpAddress> ftpAddressFrom(std::string_view server) {
  const Scheme& scheme = schemeOf(server);
  server.remove_prefix(scheme.prefix.size());
  const std::size_t bracket = server.rfind(']');
  const std::size_t colon = server.find(':', bracket == std::string_view::npos ? 0 : bracket);
  FtpAddress address{.host = std::string(server.substr(0, colon)), .security = scheme.security};
  if (!isHost(address.host)) return std::nullopt;
  if (colon == std::string_view::npos) return address;
  const auto port = portFrom(server.substr(colon + 1));
  if (!port) return std::nullopt;
  address.port = *port;
  return address;
}

std::string urlOf(const FtpAddress& address, std::string_view name) {
  constexpr std::string_view hexadecimal = "0123456789ABCDEF";
  std::string url = (address.security == FtpSecurity::implicitTls ? "ftps://" : "ftp://") + address.host;
  if (address.port != 0) url += ":" + std::to_string(address.port);
  url += '/';
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if (isLetterOrDigit(c) || c == '.' || c == '-' || c == '_')
      url += c;
    else
      url.append({'%', hexadecimal[byte >> 4U], hexadecimal[byte & 15U]});
  }
  return url;
}

bool wouldEndCommand(std::initializer_list<std::string_view> texts) {
  static constexpr std::string_view ends("\r\n\0", 3);
  return std::ranges::any_of(texts, [](std::string_view text) { return text.find_first_of(ends) != text.npos; });
}

}  // namespace tellaxis::platform
