#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwell::link {

/// The bytes around a frame's text: both braces, the address byte and the checksum character.
inline constexpr std::size_t kFrameOverhead = 4;

inline constexpr char kOpeningBrace = '{';
inline constexpr char kClosingBrace = '}';

/// The byte that stands for a bus address from 0 to 31: "@" to "_".
constexpr char AddressByte(std::uint8_t address) { return static_cast<char>(address + 0x40); }

/// The checksum character, 0x20 to 0x5F, over the address byte and the text bytes, in order.
char ChecksumCharacter(std::string_view bytes);

/// A whole request frame: the command's bytes and kFrameOverhead more.
std::string BuildRequestFrame(std::string_view command, std::uint8_t connectAddress);

/// Whether `received`, at least one byte, is a whole frame with the right checksum, from the right address (address 0
/// takes any), that holds `expected` anywhere.
bool CheckReplyFrame(std::string_view received, std::uint8_t connectAddress, std::string_view expected);

/// The reply text of a valid frame, the echo of the command included.
std::string_view ReplyPayload(std::string_view frame);

}  // namespace tarnwell::link
