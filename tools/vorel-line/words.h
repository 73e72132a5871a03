#pragma once

#include <string>
#include <string_view>

#include "alarms/alarm_tokens.h"
#include "link/sspa_public.h"

namespace tarnwell::vorel_line {

/// What a reply to the request must hold, and the largest text that the console takes.
std::string ExpectedFor(std::string_view request);
std::size_t MostReply(std::string_view request);
int TriesFor(std::string_view request);

enum class RequestKind { kQuery, kCommand, kSetting };
RequestKind KindOf(std::string_view request);

/// What is asked or commanded: "status", "gain adjust", "RF level table, point 4".
std::string NameOf(std::string_view request);

/// The name under which requests are counted: "R04?" as "Rnn?".
std::string GroupOf(std::string_view request);

/// What texts mean for one device, by what it has told of itself.
class Words {
 public:
  /// Takes the identity from a good reply.
  void Learn(std::string_view reply);

  /// "online, RF on" for "S=OT"; a reply without a meaning of its own as it is.
  std::string Meaning(std::string_view reply) const;

  /// What a request asks or commands: "status", "standby" for "S=S".
  std::string Asks(std::string_view request) const;

  /// "5V_RAIL_LOW" for slot 0.
  std::string AlarmName(int slot) const;
  const std::string& Model() const { return m_model; }
  bool IsController() const { return m_device.SSPAType == link::kRedundancyController; }

 private:
  std::string Name(std::string_view text) const;
  std::string StatusWords(std::string_view letters) const;
  std::string AlarmWords(std::string_view letters) const;

  link::SSPA_Public m_device;
  std::string m_model;
};

/// Text for a terminal: what isn't plain ASCII as its code.
std::string Readable(std::string_view bytes);

/// "2026-11-23T18:45:12.345+01:00"
std::string TimeText(std::int64_t at, int offset);

}  // namespace tarnwell::vorel_line
