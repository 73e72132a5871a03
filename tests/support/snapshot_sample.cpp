#include "support/snapshot_sample.h"

#include "snapshot/snapshot_line.h"

namespace tarnwell::test {

std::vector<std::string> AmplifierLines() {
  // clang-format off
  return {
      "[software] Tarnwell v2.01",
      "[file description] rack 2 after service",
      "[time dd/mm/yyyy hh:mm:ss] 14/03/2007 09:26:41",
      "[sspa] 240W C-BAND",
      "[address] 1",
      "[transceiver] VOREL",
      "[operating state] ONLINE",
      "[temp comp] ON",
      "[sspa beeper] OFF",
      "[eeprom storage] ON",
      "[comms mode] REM",
      "[rf output] RF ON",
      "[rf level] 43.2 dBm",
      "[reflected rf level] NA",
      "[gain adjust] 0.5 dB",
      "[rf min] DISABLED",
      "[rf max] 47.0 dBm",
      "[reflected rf max] NA",
      "[temp amp1] 41\xB0" "C",
      "[temp amp2] 44\xB0" "C",
      "[active alarms] NONE",
      "[latched alarms] RF_LEVEL_LOW, OVER_TEMP_AMP1, AUXILIARY",
      "[latched alarms] SIMULATED",
      "[5v rail] 5.02 V",
      "[11v rail] 11.04 V",
      "[11v lc rail] 11.01 V",
      "[14v rail] 14.10 V",
      "[-10v rail] -9.98 V",
      "[firmware] 0264C-01 V6.0",
      "[hw platform] 842",
      "[pin diodes] 1",
      "[alarm style] LATCHED",
      "[aux alarm sense] LOW",
      "[amp shutdown] OFF",
      "[thermal fan control] ON",
      "[rf temp comp points (\xB0" "C,dB)] (-20, 1.5), (25, 0), (D, D)",
      "[sys temp comp points (\xB0" "C,dB)] (-40, 2.5), (-20, 1.5), (0, .5)",
      "[sys temp comp points (\xB0" "C,dB)] (20, 0), (40, -.5), (60, -1)",
      "[sys temp comp points (\xB0" "C,dB)] (D, D), (D, D)",
      "[rf level table (dBm,V)] (25, 0.80), (26, 1.01), (27, 1.22), (28, 1.43)",
      "[rf level table (dBm,V)] (29, 1.64), (30, 1.85), (31, 2.06), (32, 2.27)",
      "[rf level table (dBm,V)] (33, 2.48), (34, 2.69), (35, 2.90), (36, 3.11)",
      "[rf level table (dBm,V)] (37, 3.32), (38, 3.53), (39, 3.74), (40, 3.95)",
      "[rf level table (dBm,V)] (41, 4.16), (42, 4.37), (43, 4.58), (44, 4.79)",
      "[rf level table (dBm,V)] (45, 5.00), (46, 5.21), (D, D), (D, D)",
      "[rf level table (dBm,V)] (D, D), (D, D)",
      "[pin diode table (dB,DAC)] (0, 12), (1, 18), (2, 24), (3, 30)",
      "[pin diode table (dB,DAC)] (4, 36), (5, 42), (6, 48), (7, 54)",
      "[pin diode table (dB,DAC)] (8, 60), (9, 66), (10, 72), (11, 78)",
      "[pin diode table (dB,DAC)] (12, 84), (13, 90), (14, 96), (15, 102)",
      "[pin diode table (dB,DAC)] (16, 108), (17, 114), (18, 120), (19, 126)",
      "[pin diode table (dB,DAC)] (20, 132), (21, 138), (22, 144), (23, 150)",
      "[pin diode table (dB,DAC)] (24, 156), (25, 162), (26, 168), (27, 174)",
      "[pin diode table (dB,DAC)] (28, 180), (29, 186), (30, 192), (31, 198)",
      "[pin diode table (dB,DAC)] (32, 204), (33, 210), (34, 216), (35, 222)",
      "[pin diode table (dB,DAC)] (36, 228), (37, D), (38, D), (39, D)",
      "[pin diode table (dB,DAC)] (40, D)",
  };
  // clang-format on
}

std::vector<std::string> ControllerLines() {
  // clang-format off
  return {
      "[software] Tarnwell v2.01",
      "[file description] hub B weekly check",
      "[time dd/mm/yyyy hh:mm:ss] 02/11/2007 16:05:12",
      "[redundancy controller] 7316",
      "[address] 4",
      "[operating mode] AUTOMATIC",
      "[comms mode] REM",
      "[active alarms] WAVEGUIDE_2",
      "[firmware] 0264C-01 V6.0",
      "[configuration] 1:2",
      "[priority] PATH A",
      "[sspa1 state] ONLINE",
      "[sspa2 state] STANDBY/ALARM",
      "[sspa3 state] ONLINE",
      "[path a] SSPA1",
      "[path b] SSPA3",
  };
  // clang-format on
}

std::string SnapshotFile(const std::vector<std::string>& lines) {
  std::string file;
  for (const std::string& line : lines) file += snapshot::FormatSnapshotLine(line) + "\r\n";
  return file;
}

}  // namespace tarnwell::test
