#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "link/sspa_public.h"

namespace tarnwell::vorel_line {

struct Turn;

/// What texts mean for one device, by what it has told of itself.
class Words {
 public:
  /// Takes the identity from a good reply. Another model makes it a device of which no more is known.
  void Learn(std::string_view reply);

  /// "online, RF on" for "S=OT"; a reply without a meaning of its own as it is.
  std::string Meaning(std::string_view reply) const;
  /// The same without the name of what it tells: "SSPA1, SSPA3" for "O=13".
  std::string ValueMeaning(std::string_view reply) const;

  /// What a request asks or commands: "status"; "standby" for "S=S", "gain adjust -3.5 dB" for "G=-3.5".
  std::string Asks(std::string_view request) const;

  /// "5V_RAIL_LOW" for slot 0; "alarm A" where the model isn't known.
  std::string AlarmName(int slot) const;
  const std::string& Model() const { return m_model; }
  bool IsController() const { return m_device.SSPAType == link::kRedundancyController; }

 private:
  std::string Name(std::string_view text) const;
  std::string Value(std::string_view tag, std::string_view value) const;
  std::string StatusWords(std::string_view letters) const;
  std::string AlarmWords(std::string_view letters) const;

  link::SSPA_Public m_device;
  std::string m_model;
};

/// Whether two replies to one query say the same: "T1=30" and "T1=30.0" do.
bool IsSameValue(std::string_view a, std::string_view b);

/// A number at the head of the text; none where the device said something else, such as "D".
std::optional<double> NumberOf(std::string_view text);

/// The frame in a note of what is known of the device at the turn's address; empty for any other turn.
std::string KnownFrame(const Turn& turn);

/// Finds the moments at which a device is known to be at another address.
class AddressFollower {
 public:
  /// The old and the new address byte, when the device has confirmed the new one or answers there; else nothing.
  std::optional<std::pair<char, char>> Take(const Turn& turn);

 private:
  std::optional<std::pair<char, char>> m_asked;
};

}  // namespace tarnwell::vorel_line
