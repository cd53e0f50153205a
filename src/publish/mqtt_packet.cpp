// Messages are walked through from part to part; what ends too early is none.
// SPDX-License-Identifier: MIT
#include "publish/mqtt_packet.h"

#include <mqtt_protocol.h>

#include <cstdint>
#include <limits>

namespace kestrel::publish {
namespace {

// Takes parts from the front.
class Rest {
 public:
  explicit Rest(std::string_view bytes) : bytes_(bytes) {}

  [[nodiscard]] bool IsEmpty() const { return bytes_.empty(); }
  // False where there are not as many.
  bool Skip(std::size_t count) {
    if (count > bytes_.size()) return false;
    bytes_.remove_prefix(count);
    return true;
  }
  // Seven bits a byte, four bytes at most.
  std::optional<std::size_t> Size() {
    std::size_t size = 0;
    for (unsigned shift = 0; shift < 28; shift += 7) {
      const auto byte = Byte();
      if (!byte) return {};
      size |= (*byte & 0x7FU) << shift;
      if (*byte < 0x80) return size;
    }
    return std::numeric_limits<std::uint32_t>::max();
  }
  bool SkipText() {
    const auto high = Byte();
    const auto low = Byte();
    return high && low && Skip(*high * 256U + *low);
  }
  [[nodiscard]] std::string_view First(std::size_t count) const { return bytes_.substr(0, count); }

 private:
  std::optional<std::uint8_t> Byte() {
    if (bytes_.empty()) return {};
    const auto byte = static_cast<std::uint8_t>(bytes_.front());
    bytes_.remove_prefix(1);
    return byte;
  }

  std::string_view bytes_;
};

// False where the kind does not exist, or its value is not there.
bool SkipProperty(Rest& rest) {
  const auto kind = rest.Size();
  switch (kind.value_or(0)) {
    case MQTT_PROP_PAYLOAD_FORMAT_INDICATOR:
    case MQTT_PROP_REQUEST_PROBLEM_INFORMATION:
    case MQTT_PROP_REQUEST_RESPONSE_INFORMATION:
    case MQTT_PROP_MAXIMUM_QOS:
    case MQTT_PROP_RETAIN_AVAILABLE:
    case MQTT_PROP_WILDCARD_SUB_AVAILABLE:
    case MQTT_PROP_SUBSCRIPTION_ID_AVAILABLE:
    case MQTT_PROP_SHARED_SUB_AVAILABLE:
      return rest.Skip(1);
    case MQTT_PROP_SERVER_KEEP_ALIVE:
    case MQTT_PROP_RECEIVE_MAXIMUM:
    case MQTT_PROP_TOPIC_ALIAS_MAXIMUM:
    case MQTT_PROP_TOPIC_ALIAS:
      return rest.Skip(2);
    case MQTT_PROP_MESSAGE_EXPIRY_INTERVAL:
    case MQTT_PROP_SESSION_EXPIRY_INTERVAL:
    case MQTT_PROP_WILL_DELAY_INTERVAL:
    case MQTT_PROP_MAXIMUM_PACKET_SIZE:
      return rest.Skip(4);
    case MQTT_PROP_SUBSCRIPTION_IDENTIFIER:
      return rest.Size().has_value();
    case MQTT_PROP_USER_PROPERTY:
      return rest.SkipText() && rest.SkipText();
    case MQTT_PROP_CONTENT_TYPE:
    case MQTT_PROP_RESPONSE_TOPIC:
    case MQTT_PROP_CORRELATION_DATA:
    case MQTT_PROP_ASSIGNED_CLIENT_IDENTIFIER:
    case MQTT_PROP_AUTHENTICATION_METHOD:
    case MQTT_PROP_AUTHENTICATION_DATA:
    case MQTT_PROP_RESPONSE_INFORMATION:
    case MQTT_PROP_SERVER_REFERENCE:
    case MQTT_PROP_REASON_STRING:
      return rest.SkipText();
    default:
      return false;
  }
}

bool AreKnown(Rest rest) {
  const auto size = rest.Size();
  if (!size || *size > rest.First(*size).size()) return false;
  Rest properties(rest.First(*size));
  while (!properties.IsEmpty()) {
    if (!SkipProperty(properties)) return false;
  }
  return true;
}

}  // namespace

std::optional<std::size_t> SizeOfFirst(std::string_view bytes) {
  Rest rest(bytes);
  if (!rest.Skip(1)) return {};
  const auto size = rest.Size();
  if (!size) return {};
  std::size_t head = 2;
  while (head < 5 && static_cast<std::uint8_t>(bytes[head - 1]) >= 0x80) ++head;
  return head + *size;
}

bool HasKnownProperties(std::string_view message) {
  Rest rest(message);
  if (!rest.Skip(1) || !rest.Size()) return false;
  const auto first = static_cast<std::uint8_t>(message.front());
  const bool hasNumber = (first & 0x06U) != 0;
  switch (first & 0xF0U) {
    case CMD_CONNACK:
      // A broker that knows older versions alone has no additions.
      return rest.Skip(2) && (rest.IsEmpty() || AreKnown(rest));
    case CMD_SUBACK:
    case CMD_UNSUBACK:
      return rest.Skip(2) && AreKnown(rest);
    case CMD_PUBLISH:
      return rest.SkipText() && rest.Skip(hasNumber ? 2 : 0) && AreKnown(rest);
    case CMD_PUBACK:
    case CMD_PUBREC:
    case CMD_PUBREL:
    case CMD_PUBCOMP:
      // A reason, and what is added to it, may be left out.
      if (!rest.Skip(2)) return false;
      return !rest.Skip(1) || rest.IsEmpty() || AreKnown(rest);
    case CMD_DISCONNECT:
    case CMD_AUTH:
      return !rest.Skip(1) || rest.IsEmpty() || AreKnown(rest);
    default:
      return true;
  }
}

}  // namespace kestrel::publish
