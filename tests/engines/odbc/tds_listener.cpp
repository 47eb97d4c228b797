#include "engines/odbc/tds_listener.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

#include "engines/odbc/utf16.h"

namespace zenqay {
namespace {

constexpr char kResponse = 4;
constexpr char kLastPacket = 1;

unsigned ByteAt(const std::string& bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes.at(at));
}

unsigned LittleEndian16(const std::string& bytes, std::size_t at) {
  return ByteAt(bytes, at) | ByteAt(bytes, at + 1) << 8;
}

std::string Little(std::uint64_t number, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(number >> (8 * i) & 0xFF);
  return text;
}

std::string Big16(std::size_t number) {
  return {static_cast<char>(number >> 8), static_cast<char>(number & 0xFF)};
}

std::string Utf16Bytes(const Text& text) {
  WideText wide;
  Utf16().Widen(text, wide);
  std::string bytes;
  for (const unsigned short unit : wide) bytes += Little(unit, 2);
  return bytes;
}

Text Utf8Of(const std::string& bytes) {
  WideText wide;
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    wide.push_back(static_cast<unsigned short>(LittleEndian16(bytes, at)));
  }
  Text text;
  Utf16().AppendNarrow(wide.data(), wide.size(), text);
  return text;
}

bool Receive(int connection, std::string& bytes, std::size_t count) {
  bytes.resize(count);
  for (std::size_t got = 0; got < count;) {
    const ssize_t more = ::recv(connection, bytes.data() + got, count - got, 0);
    if (more <= 0) return false;
    got += static_cast<std::size_t>(more);
  }
  return true;
}

/// One message, which may come in several packets, without their headers.
bool ReceiveMessage(int connection, std::string& message) {
  message.clear();
  for (bool isLast = false; !isLast;) {
    std::string header;
    std::string body;
    if (!Receive(connection, header, 8)) return false;
    isLast = (header[1] & kLastPacket) != 0;
    if (!Receive(connection, body, (ByteAt(header, 2) << 8 | ByteAt(header, 3)) - 8)) return false;
    message += body;
  }
  return true;
}

void SendResponse(int connection, const std::string& body) {
  const std::string packet =
      std::string{kResponse, kLastPacket} + Big16(body.size() + 8) + std::string("\0\0\1\0", 4) + body;
  ::send(connection, packet.data(), packet.size(), MSG_NOSIGNAL);
}

/// Its version, and that it has no encryption.
std::string PreLoginAnswer() {
  constexpr std::size_t kHead = 11;
  return std::string("\0", 1) + Big16(kHead) + Big16(6) + "\1" + Big16(kHead + 6) + Big16(1) + "\xFF" +
         std::string("\x0F\0\0\0\0\0", 6) + "\2";
}

/// An error of severity 14 in line 1, and the end of the answer.
std::string ErrorAnswer(std::int32_t number, const Text& text) {
  const std::string message = Utf16Bytes(text);
  const std::string server = Utf16Bytes("DB");
  const std::string error = Little(static_cast<std::uint32_t>(number), 4) + "\1\x0E" + Little(message.size() / 2, 2) +
                            message + Little(server.size() / 2, 1) + server + Little(0, 1) + Little(1, 4);
  return "\xAA" + Little(error.size(), 2) + error + "\xFD" + Little(2, 2) + Little(0, 2) + Little(0, 8);
}

/// One of the texts of the login packet, whose offset and length stand at `at`.
std::string LoginField(const std::string& login, std::size_t at) {
  if (login.empty()) return "";
  return login.substr(LittleEndian16(login, at), std::size_t{2} * LittleEndian16(login, at + 2));
}

std::string Revealed(std::string password) {
  for (char& byte : password) {
    const unsigned hidden = static_cast<unsigned char>(byte) ^ 0xA5U;
    byte = static_cast<char>(hidden >> 4 | (hidden & 0xF) << 4);
  }
  return password;
}

}  // namespace

TdsListener::TdsListener(std::uint32_t where, std::uint16_t port) : socket_(::socket(AF_INET, SOCK_STREAM, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(where);
  address.sin_port = htons(port);
  socklen_t length = sizeof address;
  auto* const name = reinterpret_cast<sockaddr*>(&address);
  const bool isBound = ::bind(socket_, name, length) == 0 && ::getsockname(socket_, name, &length) == 0;
  if (!isBound) throw std::runtime_error("no port");
  port_ = ntohs(address.sin_port);
}

TdsListener::~TdsListener() {
  ::shutdown(socket_, SHUT_RDWR);  // nobody may have come
  if (answering_.joinable()) answering_.join();
  ::close(socket_);
}

void TdsListener::Answer(const std::string& answer) {
  answer_ = answer;
  ListenWith(&TdsListener::TalkAsGiven);
}

void TdsListener::AnswerLogin(std::int32_t number, const Text& text) {
  answer_ = ErrorAnswer(number, text);
  ListenWith(&TdsListener::TalkAsServer);
}

TdsLogin TdsListener::Login() {
  ::shutdown(socket_, SHUT_RDWR);
  if (answering_.joinable()) answering_.join();
  constexpr std::size_t kUser = 40;
  constexpr std::size_t kPassword = 44;
  constexpr std::size_t kDatabase = 68;
  return {Utf8Of(LoginField(login_, kUser)), Utf8Of(Revealed(LoginField(login_, kPassword))),
          Utf8Of(LoginField(login_, kDatabase))};
}

void TdsListener::ListenWith(void (TdsListener::*talk)(int connection)) {
  ::listen(socket_, 1);
  answering_ = std::thread([this, talk] {
    const int connection = ::accept(socket_, nullptr, nullptr);
    if (connection < 0) return;
    (this->*talk)(connection);
    ::close(connection);
  });
}

void TdsListener::TalkAsGiven(int connection) {
  char bytes[4096];
  const ssize_t received = ::recv(connection, bytes, sizeof bytes, 0);
  if (received > 0) ::send(connection, answer_.data(), answer_.size(), MSG_NOSIGNAL);
}

void TdsListener::TalkAsServer(int connection) {
  std::string preLogin;
  if (!ReceiveMessage(connection, preLogin)) return;
  SendResponse(connection, PreLoginAnswer());
  if (!ReceiveMessage(connection, login_)) return;
  SendResponse(connection, answer_);
}

}  // namespace zenqay
