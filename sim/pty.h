#pragma once

#include <memory>
#include <string>

namespace tarnwell::sim {

/// The end of a line that can be pulled and plugged.
class Line {
 public:
  virtual ~Line() = default;

  /// Opens the line. Gives what went wrong, or nothing.
  virtual std::string Open() = 0;
  virtual void Close() = 0;

  /// -1 while closed.
  virtual int Descriptor() const = 0;
  /// What the other end opens.
  virtual const std::string& Path() const = 0;

  /// Lets the other end be opened anew. A program that was killed leaves its claim to be the only one behind, and it
  /// would outlive the program for as long as this end is open. Due when the other end has been heard.
  virtual void LiftClaim() const {}
};

/// What becomes of a symbolic link that is there already.
enum class OldLink {
  kReplaced,  ///< it goes
  kPutBack    ///< it comes back when the line is closed; where it leads to a pseudo-terminal in use, Open() refuses
};

/// A pseudo-terminal in raw mode. A symbolic link to it stands at `link`, unless that is empty, as long as it is open;
/// folders on the way to it are made and stay.
/// A file of that name isn't replaced.
std::unique_ptr<Line> MakePty(const std::string& link, OldLink oldLink = OldLink::kReplaced);

/// A real serial device at 8 data bits, no parity, one stop bit, and `bitsPerSecond`, 9600 where that is 0.
std::unique_ptr<Line> MakePort(const std::string& path, int bitsPerSecond);

}  // namespace tarnwell::sim
