#include "protocol/vocabulary.h"

#include "link/frame_codec.h"
#include "protocol/encodings.h"

namespace tarnwell::protocol {

namespace {

/// A setting whose reply opens with its own name: "S=O" expects "S=".
Request Setting(const std::string& name, const std::string& value, std::uint8_t maxReply) {
  return {name + "=" + value, name + "=", maxReply};
}

Request Setting(const std::string& name, char letter, std::uint8_t maxReply) {
  return Setting(name, std::string(1, letter), maxReply);
}

std::string ValueOrDisabled(double value) {
  return value == kDisabledValue ? std::string(1, kDisabledMark) : NumberText(value);
}

std::string FixedHead(int degrees) { return (degrees < 0 ? "H" : "H+") + TemperatureText(degrees); }

/// "RT01.25=" value, of which the reply must hold all up to the point: the device may round the temperature.
Request SetCompensation(const std::string& point, int degrees, double compensation) {
  return {point + "." + std::to_string(degrees) + "=" + ValueOrDisabled(compensation), point + ".", 20};
}

}  // namespace

Request SetStatus(char letter) { return Setting("S", letter, 20); }

Request SetConfiguration(char digit) { return Setting("CM", digit, 15); }

Request SetPriority(char letter) { return Setting("CP", letter, 15); }

Request SetPath(std::string_view setting) {
  const std::string text = "P" + std::string(setting);
  return {text, text.substr(0, 3), 20};
}

Request SetGain(double decibels) { return Setting("G", NumberText(decibels), 15); }

Request SetTransceiver(bool vorel) { return Setting("TX", vorel ? '1' : '0', 15); }

Request SetThreshold(std::string_view tag, int tenths) {
  const std::string value = tenths < 0 ? std::string(1, kDisabledMark) : NumberText(tenths / 10.0);
  return Setting(std::string(tag), value, 15);
}

Request SetShutdown(bool on) { return Setting("CS", on ? 'E' : 'D', 20); }

Request SetFan(bool thermal) { return Setting("CF", thermal ? 'E' : 'D', 20); }

Request SetAuxSense(bool high) { return Setting("CX", high ? 'H' : 'L', 20); }

Request SetAlarmStyle(bool latching) { return Setting("CA", latching ? 'L' : 'F', 20); }

Request SetAddress(std::uint8_t address) {
  Request request = Setting("U", link::AddressByte(address), 20);
  request.tries = 1;
  return request;
}

Request RFLevelPointQuery(int index) { return {"R" + IndexText(index) + "?", "R" + IndexText(index) + "=", 20}; }

Request SetRFLevelPoint(int index, double volts) { return Setting("R" + IndexText(index), ValueOrDisabled(volts), 20); }

Request QuickCalibration(int index) { return {"Q" + IndexText(index), "R" + IndexText(index) + "=", 20}; }

Request PiNPointQuery(int index) { return {"P" + IndexText(index) + "?", "P" + IndexText(index) + "=", 20}; }

Request SetPiNPoint(int index, std::string_view text) { return Setting("P" + IndexText(index), std::string(text), 20); }

Request SelectPiNPoint(int index) { return {"P" + IndexText(index) + "?", "P", 20}; }

Request RFCompensationQuery(int index) { return {"RT" + IndexText(index) + "?", "RT" + IndexText(index), 20}; }

Request SetRFCompensation(int index, int degrees, double compensation) {
  return SetCompensation("RT" + IndexText(index), degrees, compensation);
}

Request SystemCompensationQuery(int index) { return {"H" + IndexText(index) + "?", "H" + IndexText(index), 20}; }

Request SetSystemCompensation(int index, int degrees, double compensation) {
  return SetCompensation("H" + IndexText(index), degrees, compensation);
}

Request FixedCompensationQuery(int degrees) { return {FixedHead(degrees) + "?", FixedHead(degrees), 15}; }

Request SetFixedCompensation(int degrees, double compensation) {
  return {FixedHead(degrees) + "=" + ValueOrDisabled(compensation), TemperatureText(degrees) + "=", 15};
}

}  // namespace tarnwell::protocol
