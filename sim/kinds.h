#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tarnwell::sim {

/// What is built in a kind of device. Texts must leave room in the shortest reply that the console takes: 17 characters
/// for model and firmware, 12 for the platform.
struct Kind {
  std::string_view name;  ///< as given to --kind
  std::string_view model;
  std::string_view firmware;
  std::string_view platform;
  int modules;        ///< 1 or 2; 0 for a controller
  double levelDbm;    ///< RF level at gain 0
  double railVolts;   ///< the rail that most kinds have at 11 V
  bool hasReflected;  ///< measures reflected power, on the platform that can
};

std::span<const Kind> Kinds();

/// Null for a name that is none.
const Kind* FindKind(std::string_view name);

/// One device as wanted. Empty texts and 0 modules stand for what the kind has.
struct DeviceSetup {
  const Kind* kind;
  std::uint8_t address = 1;
  std::string firmware;
  std::string platform;
  int modules = 0;
  std::uint32_t seed = 1;  ///< of ripple and drift; 0: what is measured stands still
};

}  // namespace tarnwell::sim
