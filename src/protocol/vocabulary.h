#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "link/send_command.h"

namespace tarnwell::protocol {

inline constexpr std::uint8_t kUsualTries = 3;

/// One request of the device's vocabulary: what is sent, what a reply must hold, and the largest reply text taken.
struct Request {
  std::string text;
  std::string expected;
  std::uint8_t maxReply;
  std::uint8_t snapshotMaxReply = maxReply;  ///< the limit that a snapshot uses
  std::uint8_t tries = kUsualTries;

  Request ForSnapshot() const { return {text, expected, snapshotMaxReply, snapshotMaxReply, tries}; }
};

/// Sends `request`; see SerialLink::SendCommand.
inline bool Send(link::SerialLink& line, const Request& request, std::string& reply) {
  return line.SendCommand(request.text, reply, request.tries, request.maxReply, request.expected);
}

// Queries of every device.
inline const Request kModelQuery{"CT?", "CT=", 20};
inline const Request kFirmwareQuery{"CV?", "CV=", 20};
inline const Request kStatusQuery{"S?", "S=", 20};
inline const Request kAlarmQuery{"A?", "A=", 35};
inline const Request kAddressQuery{"U?", "U=", 15, 20};
inline const Request kNewAddressQuery{"U?", "U=", 20};  ///< after the address was set, at the new one

/// Controller: the priority path. Amplifier of firmware class 2 or 3: a text on its PiN diodes.
inline const Request kPriorityOrDiodeQuery{"CP?", "CP=", 20};

// Queries of a controller.
inline const Request kConfigurationQuery{"CM?", "CM=", 20};
inline const Request kOnlineQuery{"O?", "O=", 20};
inline const Request kPathAQuery{"PA?", "PA=", 20};
inline const Request kPathBQuery{"PB?", "PB=", 20};

// Queries of an amplifier: measurements.
inline const Request kGainQuery{"G?", "G=", 15, 20};
inline const Request kRFLevelQuery{"VR?", "VR=", 15};
inline const Request kReflectedLevelQuery{"VR2?", "VR2=", 15};  ///< platform 4
inline const Request kTemperature1Query{"VT?", "VT=", 15};
inline const Request kTemperature2Query{"VT2?", "VT2=", 15};  ///< two modules
inline const Request kRail5VQuery{"V5?", "V5=", 20, 15};
inline const Request kRail11VQuery{"V11?", "V11=", 20, 15};
inline const Request kRail11VLCQuery{"V11LC?", "V11LC=", 20, 15};  ///< platform 2
inline const Request kRail14VQuery{"V14?", "V14=", 20, 15};
inline const Request kRailMinus10VQuery{"V-10?", "V-10=", 20, 15};

// Queries of an amplifier: settings.
inline const Request kPlatformQuery{"CH?", "CH=", 20, 15};  ///< class 2 or 3
inline const Request kTransceiverQuery{"TX?", "TX=", 15, 20};
inline const Request kRFMinimumQuery{"T1?", "T1=", 20, 15};
inline const Request kRFMaximumQuery{"T2?", "T2=", 20, 15};
inline const Request kReflectedMaximumQuery{"T3?", "T3=", 20, 15};
inline const Request kShutdownQuery{"CS?", "CS=", 20, 15};
inline const Request kAlarmStyleQuery{"CA?", "CA=", 20, 15};
inline const Request kAuxSenseQuery{"CX?", "CX=", 20, 15};
inline const Request kFanQuery{"CF?", "CF=", 20};

// Commands.
inline const Request kLocalLockout{"LLO", "S=", 20};
inline const Request kRemote{"REM", "S=", 20};
inline const Request kClearAlarms{"ZA", "A=", 35};  ///< the reply isn't decoded; kAlarmQuery follows

Request SetStatus(char letter);        ///< state, RF, beeper, temperature compensation, controller's mode
Request SetConfiguration(char digit);  ///< '1' for 1:1, '2' for 1:2
Request SetPriority(char letter);      ///< 'N', 'A', 'B'
/// `setting` is "A=1", "A=2", "B=2" or "B=3".
Request SetPath(std::string_view setting);
Request SetGain(double decibels);
Request SetTransceiver(bool vorel);
/// `tag` is "T1", "T2" or "T3"; below 0 tenths the limit is disabled.
Request SetThreshold(std::string_view tag, int tenths);
Request SetShutdown(bool on);
Request SetFan(bool thermal);
Request SetAuxSense(bool high);
Request SetAlarmStyle(bool latching);
/// One try: the device goes on at the new address, so its reply proves nothing.
Request SetAddress(std::uint8_t address);

// Tables. Indexes count as the device does: RF level 0 to 25, PiN diode 0 to 40, RF compensation 1 to 3, system
// compensation 1 to 8. A value of kDisabledValue, and a text "D", disable the point.
Request RFLevelPointQuery(int index);
Request SetRFLevelPoint(int index, double volts);
Request QuickCalibration(int index);
Request PiNPointQuery(int index);
Request SetPiNPoint(int index, std::string_view text);
Request SelectPiNPoint(int index);  ///< in maintenance; the reply isn't parsed
Request RFCompensationQuery(int index);
Request SetRFCompensation(int index, int degrees, double compensation);
Request SystemCompensationQuery(int index);
Request SetSystemCompensation(int index, int degrees, double compensation);
// Firmware class 1: the points stand at fixed temperatures.
Request FixedCompensationQuery(int degrees);
Request SetFixedCompensation(int degrees, double compensation);

}  // namespace tarnwell::protocol
