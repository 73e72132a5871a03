#include "sim/device.h"

#include <gtest/gtest.h>

#include "protocol/vocabulary.h"
#include "sim/amplifier.h"
#include "sim/commands.h"

namespace tarnwell::test {
namespace {

constexpr const char* kClass1 = "0264C-01 V5.4";
constexpr const char* kClass2 = "0264C-01 V6.0";
constexpr const char* kClass3 = "0264C-01 V6.2";

/// One device whose measured values stand still. Empty texts stand for what the kind has.
sim::Station MakeStation(const char* kind, const char* firmware = "", const char* platform = "") {
  sim::Options options;
  options.devices.push_back({sim::FindKind(kind), 1, firmware, platform, 0, 0});
  return sim::Station(options);
}

/// Requests and their replies, "-" for silence, and between them commands as they are typed:
/// "G=-.2 -> G=-0.2; CF? -> -; alarm E active; A? -> A=E".
void ExpectConversation(sim::Station& station, std::string_view conversation) {
  constexpr std::string_view kArrow = " -> ";
  constexpr std::string_view kNext = "; ";
  while (!conversation.empty()) {
    const std::string_view line = conversation.substr(0, conversation.find(kNext));
    conversation.remove_prefix(std::min(line.size() + kNext.size(), conversation.size()));
    const std::size_t arrow = line.find(kArrow);
    if (arrow == std::string_view::npos) {
      EXPECT_TRUE(sim::Execute(station, 0.0, line).ok) << line;
    } else {
      const auto reply = station.Selected().Answer(line.substr(0, arrow));
      EXPECT_EQ(reply.value_or("-"), line.substr(arrow + kArrow.size())) << line;
    }
  }
}

struct Case {
  const char* name;
  const char* kind;
  const char* firmware;
  const char* platform;
  const char* conversation;
};

const Case kConversations[] = {
    {"class 1 has neither platform nor diodes", "c240", kClass1, "0842",
     "CT? -> CT=240W C-BAND; CV? -> CV=0264C-01 V5.4; CH? -> -; CP? -> -; TX? -> -; CF? -> -; P00? -> -; RT01? -> -; "
     "V11LC? -> -; VR2? -> -; S=M -> -; S=S -> S=STQCR"},
    {"class 2 has no fan control", "c240", kClass2, "0842",
     "CH? -> CH=0842; CP? -> CP=1; CF? -> -; TX? -> TX=1; S=M -> S=MTQCR"},
    {"class 3, platform 2", "c240", kClass3, "0842",
     "CF? -> CF=ON; CF=D -> CF=OFF; CF=E -> CF=ON; CF=X -> -; V11LC? -> V11LC=11.00; VR2? -> -; T3? -> -; "
     "VT2? -> VT2=44.0"},
    {"platform 4 measures what is reflected and has no converter", "c60", kClass3, "0857E",
     "VR? -> VR=47.8; VR2? -> VR2=29.8; T3? -> T3=D; T3= 30 -> T3=30.0; TX? -> -; CF? -> -; V11LC? -> -; VT2? -> -"},
    {"a K-band amplifier on platform 4 has no reflected limit", "k80", kClass3, "0857E",
     "VR2? -> VR2=31.0; T3? -> -; T3=D -> -; V11? -> V11=9.30; VT2? -> VT2=44.0"},
    {"measured values", "c120", kClass2, "",
     "VT? -> VT=41.0; V5? -> V5=5.00; V11? -> V11=11.00; V14? -> V14=14.00; V-10? -> V-10=-10.00; G=-3.4 -> G=-3.4; "
     "VR? -> VR=47.4; level -3.2; VR? -> VR=-3.2; gain 0; VR? -> VR=0.2; temp 1 45.5; VT? -> VT=45.5"},
    {"numbers: out of range keeps the value, nonsense gets no answer", "c120", kClass2, "",
     "G=-.2 -> G=-0.2; G= 0 -> G=0.0; G= 1.5 -> G=0.0; G=-20 -> G=-20.0; G=-20.2 -> G=-20.0; G= -> -; G=loud -> -; "
     "G=nan -> -; T1? -> T1=D; T1= 12.5 -> T1=12.5; T1=-1 -> T1=12.5; T1=D -> T1=D; T2= 100 -> T2=100.0; "
     "T2= 100.1 -> T2=100.0"},
    {"settings by letter", "c120", kClass2, "",
     "CS? -> CS=OFF; CS=E -> CS=ON; CX=H -> CX=HIGH; CX=L -> CX=LOW; CA? -> CA=LATCHED; CA=F -> CA=FLEETING; "
     "CA=L -> CA=LATCHED; TX=0 -> TX=0; TX=2 -> -; CT=X -> -"},
    {"status letters", "c120", kClass2, "",
     "S=S -> S=STQCR; S=A -> S=STACR; S=Q -> S=STQCR; S=U -> S=STQUR; S=H -> S=STQHR; S=L -> S=STQLR; "
     "S=T -> S=STQLR; S=O -> S=OTQLR; S=Y -> -; S=OT -> -; S= -> -; LLO -> S=OTQLRY; REM -> S=OTQLR; LLO= -> -; "
     " -> -; ? -> -; = -> -; state standby; S? -> S=STQLR; U? -> U=A; U=C -> U=C; U=` -> -; U=? -> -; U= -> -"},
    {"mute letters tell every reason", "c240", "", "",
     "VR? -> VR=53.8; S=X -> S=OXQCR; VR? -> VR=-10.0; mute module; S? -> S=OXBQCR; mute direct; S? -> S=OXDBQCR; "
     "mute off; S? -> S=OTQCR; mute direct; S=T -> S=OXDQCR; VR? -> VR=-10.0; mute off; A? -> A=p; module fail; "
     "S? -> S=OTBQCR; A? -> A=P; VR? -> VR=-10.0; module ok; A? -> A=p"},
    {"alarms latch by the alarm style", "c60", "", "",
     "alarm E active; alarm Z active; alarm E passed; A? -> A=eZ; CA=F -> CA=FLEETING; alarm B active; "
     "alarm B passed; A? -> A=eZ; ZA -> A=Z; alarm S latched; alarms off; A? -> A="},
    {"remote lockout takes no setting", "c240", "", "",
     "S=S -> S=STQCR; alarm E latched; lockout on; S=O -> -; REM -> -; LLO -> -; ZA -> -; U=C -> -; G=-1 -> -; "
     "R00=D -> -; Q00 -> -; S? -> S=STQCRZ; A? -> A=e; U? -> U=A; lockout off; S? -> S=STQCR; comms llo; "
     "S? -> S=STQCRY"},
    {"controller in automatic mode", "controller", "", "",
     "CT? -> CT=7316 CONTROLLER; S? -> S=A; O? -> O=13; PA? -> PA=1; PA=2 -> -; PB=2 -> -; ZA -> -; CM? -> CM=2; "
     "CP=B -> CP=B; G? -> -; VR? -> -; S=O -> -"},
    {"controller in manual mode", "controller", "", "",
     "S=M -> S=M; PA=2 -> PA=2; O? -> O=23; PB=2 -> PB=3; PA=3 -> -; PA=? -> -; PA=1 -> PA=1; PB=2 -> PB=2; "
     "O? -> O=12; ZA -> A=; CP=N -> CP=N; CP=C -> -; CM=1 -> CM=1; PB? -> PB=?; PB=3 -> -; PA=2 -> PA=2; CM=3 -> -; "
     "LLO -> S=MY; lockout on; PA=1 -> -; CM=2 -> -"},
    {"controller moved by hand", "controller", "", "",
     "manual; path B ?; PB? -> PB=?; PB=2 -> PB=2; path A 2; PA? -> PA=2; priority B; CP? -> CP=B; online 2; O? -> "
     "O=2; "
     "online; O? -> O=; config 1:1; CM? -> CM=1; auto; S? -> S=A"},
    {"RF levels and diodes", "c240", kClass2, "",
     "R00? -> R00=P25V0.80; R21? -> R21=P46V5.21; R25? -> R25=D; R26? -> -; R5? -> -; R005? -> -; R00 -> -; "
     "R05= 2.35 -> R05=P30V2.35; R05= 15.1 -> R05=P30V2.35; R05= -> -; R05=D -> R05=D; R05=-1 -> R05=D; "
     "P00? -> P00=12; P36? -> P36=228; P40? -> P40=D; P41? -> -; P07=007 -> P07=7; P07=256 -> P07=7; P07=D -> P07=D; "
     "P07=1.5 -> -; Q25 -> R25=P54V6.85; R25? -> R25=P54V6.85; Q26 -> -; Q -> -; Q25? -> -"},
    {"compensation", "c240", kClass2, "",
     "RT01? -> RT01.-20=1.5; RT03? -> RT03=D; RT00? -> -; RT04? -> -; RT02.25= 1.5 -> RT02.25=1.5; "
     "RT02.25=-1.25 -> RT02.25=-1.25; RT02.126= 1 -> RT02.25=-1.25; RT02.25= 10.1 -> RT02.25=-1.25; "
     "RT02.25=D -> RT02.25=D; RT02= 1 -> -; RT02.x= 1 -> -; RT02.25? -> -; H01? -> H01.-40=2.5; H03? -> H03.0=.5; "
     "H08? -> H08=D; H09? -> -; H08.-10=-.5 -> H08.-10=-.5; H+000? -> -"},
    {"compensation of class 1 stands at fixed temperatures", "c240", kClass1, "",
     "H-050? -> H-050=2.5; H+000? -> H+000=.5; H+125? -> H+125=D; H+025= 1.5 -> H+025=1.5; H-050=D -> H-050=D; "
     "H+000= 11 -> H+000=.5; H+000=x -> -; H000? -> -; H+050 -> -; H+010? -> -; H01? -> -; R00? -> R00=P25V0.80"},
    {"the diode point in view attenuates in maintenance alone", "c240", "", "",
     "P10? -> P10=72; VR? -> VR=53.8; S=M -> S=MTQCR; P10? -> P10=72; VR? -> VR=43.8; S=O -> S=OTQCR; VR? -> VR=53.8"},
};

TEST(Device, Conversations) {
  for (const Case& row : kConversations) {
    SCOPED_TRACE(row.name);
    sim::Station station = MakeStation(row.kind, row.firmware, row.platform);
    ExpectConversation(station, row.conversation);
  }
}

TEST(Device, MovesByItsSeedAndStaysNearItsGoal) {
  const auto history = [](std::uint32_t seed, const char* status, double lowest, double highest) {
    const auto device = sim::MakeDevice({sim::FindKind("c240"), 1, {}, {}, 0, seed});
    device->SetStatus(status);
    std::string all;
    for (int i = 0; i < 300; ++i) all += *device->Answer("VR?") + *device->Answer("VT?") + *device->Answer("V14?");
    const double temperature = std::stod(device->Answer("VT?")->substr(3));
    EXPECT_TRUE(temperature > lowest && temperature < highest) << temperature;
    return all;
  };
  const std::string online = history(7, "O", 38.5, 43.5);
  EXPECT_EQ(history(7, "O", 38.5, 43.5), online);
  EXPECT_NE(history(8, "O", 38.5, 43.5), online);
  history(7, "S", 28.5, 35.0);
}

/// The console's own idea of what a reply must hold and how long it may be, at the values that take the most room.
TEST(Device, RepliesFitWhatTheConsoleTakes) {
  using namespace protocol;
  sim::Station station = MakeStation("c240", "0264C-01 V6.2 (17", "0842/0358 12");
  ExpectConversation(station, "level -99.9; mute direct; module fail; temp 1 -99.9");
  sim::Device& device = station.Selected();
  for (char letter = 'A'; letter <= 'Z'; ++letter) device.Alarms().Set(letter, sim::AlarmBoard::State::kActive);
  const auto fits = [&device](const Request& request) {
    const std::string reply = device.Answer(request.text).value_or("(none)");
    EXPECT_NE(reply.find(request.expected), std::string::npos) << request.text << " " << reply;
    EXPECT_LE(reply.size(), std::min(request.maxReply, request.snapshotMaxReply)) << reply;
  };
  const auto fit = [&fits](const auto&... requests) { (fits(requests), ...); };
  fit(kModelQuery, kFirmwareQuery, kStatusQuery, kAlarmQuery, kAddressQuery, kGainQuery, kRFLevelQuery, kFanQuery,
      kTemperature1Query, kTemperature2Query, kRail5VQuery, kRail11VQuery, kRail11VLCQuery, kRail14VQuery,
      kRailMinus10VQuery, kPlatformQuery, kPriorityOrDiodeQuery, kTransceiverQuery, kRFMinimumQuery, kRFMaximumQuery,
      kShutdownQuery, kAlarmStyleQuery, kAuxSenseQuery, kLocalLockout, kRemote, kClearAlarms);
  fit(SetGain(-19.8), SetThreshold("T1", 1000), SetShutdown(false), SetFan(false), SetAuxSense(true),
      SetAlarmStyle(false), SetStatus('U'), SetAddress(31), SetRFLevelPoint(25, 14.99), RFLevelPointQuery(25),
      QuickCalibration(25), SetPiNPoint(40, "255"), PiNPointQuery(40), SelectPiNPoint(0),
      SetRFCompensation(3, -50, -9.99), RFCompensationQuery(3), SetSystemCompensation(8, 125, -9.99),
      SystemCompensationQuery(8));
}

TEST(Commands, WrongOnesSaySoAndChangeNothing) {
  const struct {
    const char* kind;
    const char* line;
    const char* error;
  } cases[] = {
      {"c240", "explode", "unknown command explode; help lists them"},
      {"c240", "alarm e active", "usage: alarm LETTER active|passed|latched|off"},
      {"c240", "alarm E on", "usage: alarm LETTER active|passed|latched|off"},
      {"c240", "mute on now", "usage: mute on|direct|module|off"},
      {"c240", "temp 3 40", "usage: temp 1|2 DEGREES"},
      {"c240", "fault drop 2", "usage: fault NAME PROBABILITY"},
      {"c240", "path A 1", "path: not a controller"},
      {"controller", "gain -1", "gain: not an amplifier"},
      {"controller", "path A 3", "usage: path A 1|2|? or B 2|3|?"},
  };
  for (const auto& row : cases) {
    sim::Station station = MakeStation(row.kind);
    const std::string before = sim::Execute(station, 0.0, "show").text;
    const sim::Outcome outcome = sim::Execute(station, 0.0, row.line);
    EXPECT_FALSE(outcome.ok) << row.line;
    EXPECT_EQ(outcome.text, row.error);
    EXPECT_EQ(sim::Execute(station, 0.0, "show").text, before) << row.line;
  }
}

}  // namespace
}  // namespace tarnwell::test
