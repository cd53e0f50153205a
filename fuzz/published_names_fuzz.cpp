// Arbitrary names and notes on their way into topics, labels and messages.
// SPDX-License-Identifier: MIT
#include <mosquitto.h>

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

#include "exchange/texts.h"
#include "input.h"
#include "publish/messages.h"
#include "publish/names.h"
#include "publish/settings.h"
#include "require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kestrel;
  using namespace kestrel::publish;
  Input input(data, size);
  const std::string first(input.Until('\n'));
  const std::string second(input.Until('\n'));
  const Names names{first, second};
  const std::string topic = TopicOf(names, "alarm");
  Require(mosquitto_pub_topic_check(topic.c_str()) == MOSQ_ERR_SUCCESS &&
              mosquitto_validate_utf8(topic.c_str(), static_cast<int>(topic.size())) ==
                  MOSQ_ERR_SUCCESS,
          "a broker takes the topic");
  Require(std::ranges::count(topic, '/') == 3, "of four levels");
  Require((TopicLevel(first) == TopicLevel(second)) == (first == second),
          "different names have different levels");
  const std::string clean = CleanText(first);
  Require(exchange::IsUtf8(clean) && clean.size() <= kLongestCleanName, "a text is short");
  for (const char c : clean) Require(static_cast<unsigned char>(c) >= ' ', "and of one line");
  const Alarm alarm{.id = second, .of = names};
  const auto json = nlohmann::json::parse(JsonOf(alarm), nullptr, false);
  Require(json.is_object(), "a message is JSON");
  static_cast<void>(WordsOf(std::string(input.Rest())));
  return 0;
}
