#pragma once

#include <string>
#include <string_view>

namespace tarnwell::vorel_line {

// What is known of a request by its text alone.

/// The text ahead of "?" or "=".
std::string_view Tag(std::string_view text);

/// What a reply to the request must hold, and the largest text that the console takes.
std::string ExpectedFor(std::string_view request);
std::size_t MostReply(std::string_view request);
int TriesFor(std::string_view request);

enum class RequestKind { kQuery, kCommand, kSetting };
RequestKind KindOf(std::string_view request);

/// Values that are told when they become others.
enum class Watch {
  kNot,
  kState,   ///< a controller's: it switches by itself, so also what is found, and what a command made of it
  kSetting  ///< an amplifier's: where a query finds another value than the last query or command; somebody else set it
};
Watch WatchOf(std::string_view request);

/// What is asked or commanded: "status", "gain adjust", "RF level table, point 4".
std::string NameOf(std::string_view request);

/// The unit of what is asked; empty where it has none.
std::string_view UnitOf(std::string_view request);

/// The name under which requests are counted: "R04?" as "Rnn?".
std::string GroupOf(std::string_view request);

}  // namespace tarnwell::vorel_line
