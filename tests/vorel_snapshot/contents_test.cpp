#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScopeGuard>

#include "vorel_snapshot/snapshot_commands.h"

namespace tarnwell::test {
namespace {

TEST_F(SnapshotCommands, DiffTellsWhatTheServiceVisitChanged) {
  Write("a.txt", SampleFile("amplifier.txt"));
  const auto diff = [&](const std::string& after, const std::string& options = "") {
    Write("b.txt", after);
    const int code = Run("diff a.txt b.txt" + options);
    return std::to_string(code) + m_out.substr(m_out.find("\n\n") + 1);
  };
  const std::string drifted =
      Changed({{2, "[file description] later"}, {13, "[rf level] 43.25 dBm"}, {15, "[gain adjust] .50 dB"}});
  EXPECT_EQ(diff(drifted),
            "0\nmeasured, not counted\n  rf level                        43.2 dBm                 -> 43.25 dBm\n\n"
            "no difference that counts\n");
  EXPECT_EQ(diff(drifted, " --readings"),
            "1\nchanged\n  rf level                        43.2 dBm                 -> 43.25 dBm\n\n1 difference\n");
  EXPECT_EQ(diff(Changed({{16, "[rf min] 20 dBm"},
                          {20, "[temp amp2] #ERR"},
                          {23, "[latched alarms] CE_FAILSAFE"},
                          {25, "[9.3v rail] 11.04 V"},
                          {45, "[rf level table (dBm,V)] (45, 5.00), (#ERR, #ERR), (D, D), (48, 5.63)"}})),
            "1\nchanged\n"
            "  rf min                          disabled                 -> 20 dBm\n"
            "  temp amp2                       44 °C                    -> not read (#ERR)\n"
            "  latched alarms                  come: CE_FAILSAFE; gone: SIMULATED\n"
            "  9.3v rail                       11.04 V                  -> 11.04 V\n"
            "  rf level table, point 22        (46, 5.21)               -> (#ERR, #ERR)\n"
            "  rf level table, point 24        (D, D)                   -> (48, 5.63)\n\n6 differences\n");
  std::string damaged = Changed({{16, "[rf min] 20 dBm"}, {17, "[rf max] 4x.0 dBm"}, {21, "[active alarms] EEPROM"}});
  damaged.replace(At(21, 18), 1, "X").replace(At(46, 27), 1, "E").erase(At(13, 1), 82);
  EXPECT_EQ(diff(damaged),
            "4\nchanged\n  rf min                          disabled                 -> 20 dBm\n"
            "\ndamaged, counted apart\n"
            "! rf level                        43.2 dBm                 -> (no such line)\n"
            "! rf max                          47.0 dBm                 -> 4x.0 dBm\n"
            "! active alarms                   come: EXPROM\n"
            "! rf level table, point 25        (D, D)                   -> lost\n"
            "! rf level table, point 26        (D, D)                   -> lost\n\n"
            "1 difference, 5 in damage\n");
}

TEST_F(SnapshotCommands, ExportKeepsNumbersUnitsAndWhatIsNotThereApart) {
  Write("a.txt", Changed({{2, "[file description] =\"x\", y"},
                          {13, "[rf level] #ERR"},
                          {24, "[5v rail] 5.x V"},
                          {36, "[rf temp comp points (\xB0\x43,dB)] (-20, .5), (#ERR, #ERR), (30, D)"},
                          {47, "[pin diode table (dB,DAC)] (0, 12), (1, 18), (2, 24), (3, -)"},
                          {48, "[pin diode table (dB,DAC)] (4, x), (5, 42), (5, 48), (7, 54)"}}));
  EXPECT_EQ(Run("export a.txt --csv"), 1);
  EXPECT_EQ(m_err,
            "a.txt:24: column 13: not the unit V\na.txt:47: column 60: no point in brackets\na.txt:48: column 32: no "
            "point in brackets\n"
            "a.txt:48: point 5 where 6 belongs\n");
  ExpectLines({"file description,,,\"'=\"\"x\"\", y\",,", "time,,,2007-03-14T09:26:41,,", "rf level,,,,,#ERR",
               "rf min,,,,,disabled", "rf max,,,47,dBm,", "5v rail,,,,,damaged",
               "latched alarms,,,\"RF_LEVEL_LOW, OVER_TEMP_AMP1, AUXILIARY, SIMULATED\",,",
               "rf temp comp points,1,compensation,0.5,dB,", "rf temp comp points,2,temperature,,°C,#ERR",
               "rf temp comp points,3,temperature,30,°C,", "rf temp comp points,3,compensation,,dB,disabled",
               "pin diode table,3,DAC,24,,", "pin diode table,4,DAC,,,lost", "pin diode table,5,DAC,,,lost",
               "pin diode table,6,DAC,42,,", "pin diode table,7,DAC,,,lost", "pin diode table,8,DAC,54,,"});

  EXPECT_EQ(Run("export a.txt --json"), 1);
  const QJsonObject json = QJsonDocument::fromJson(QByteArray::fromStdString(m_out)).object();
  EXPECT_EQ(json[QLatin1String("damage")].toArray().size(), 4);
  EXPECT_EQ(json[QLatin1String("schema")].toInt(), 1);
  const std::pair<int, const char*> cases[] = {
      {12, R"({"error":"#ERR","label":"rf level","unit":"dBm","value":null})"},
      {15, R"({"disabled":true,"label":"rf min","unit":"dBm","value":null})"},
      {20, R"({"label":"active alarms","value":[]})"},
      {22, R"({"damaged":true,"error":"lost","label":"5v rail","text":"5.x V","unit":"V","value":null})"},
      {34,
       "{\"fields\":[{\"name\":\"temperature\",\"unit\":\"°C\"},{\"name\":\"compensation\",\"unit\":\"dB\"}],"
       "\"label\":\"rf temp comp points\",\"points\":[{\"compensation\":0.5,\"point\":1,\"temperature\":-20},"
       "{\"compensation\":null,\"error\":\"#ERR\",\"point\":2,\"temperature\":null},"
       "{\"compensation\":null,\"disabled\":true,\"point\":3,\"temperature\":30}]}"}};
  for (const auto& [at, expected] : cases) {
    const QJsonObject entry = json[QLatin1String("entries")].toArray()[at].toObject();
    EXPECT_EQ(QJsonDocument(entry).toJson(QJsonDocument::Compact).toStdString(), expected);
  }
}

TEST_F(SnapshotCommands, AnEntryOfAWholeLineThatCannotBeReadIsLostAlone) {
  for (const char* points :
       {"(33, 2.48), (34 2.69, (35, 2.90)", "(33, 2.48), 34, 2.69), (35, 2.90)", "(33, 2.48), (34, 2.69, (35, 2.90)",
        "(33, 2.48), (34, (35, 2.90)", "(33, 2.48) (34, 2.69), (35, 2.90)", "(33, 2.48), 34), (2.69), (35, 2.90)"}) {
    Write("a.txt", Changed({{42, "[rf level table (dBm,V)] " + std::string(points) + ", (36, 3.11)"}}));
    EXPECT_EQ(Run("export a.txt --csv"), 1);
    EXPECT_EQ(m_err.find("rather than"), std::string::npos) << m_err;
    ExpectLines({"rf level table,9,level,33,dBm,", "rf level table,10,level,,dBm,lost",
                 "rf level table,11,level,35,dBm,", "rf level table,12,level,36,dBm,"});
  }
}

TEST_F(SnapshotCommands, ALineThatTheConsoleCutIsWholeAsFarAsItGoes) {
  // four points that weren't read are 81 characters; a cut behind a comma ends in a blank
  Write("a.txt",
        Changed({{40, "[rf level table (dBm,V)] (25, 0.8000000), (26, 1111111111), (27, 1.2222), (28, 1.43000)"},
                 {47, "[pin diode table (dB,DAC)] (#ERR, #ERR), (#ERR, #ERR), (#ERR, #ERR), (#ERR, #ERR)"}}));
  EXPECT_EQ(Run("verify a.txt"), 0) << m_out;
  EXPECT_EQ(Run("export a.txt --csv"), 0);
  ExpectLines({"rf level table,3,detector,1.2222,V,", "rf level table,4,detector,,V,cut",
               "pin diode table,4,attenuation,,dB,#ERR"});
  EXPECT_EQ(Run("show a.txt"), 0);
  ExpectLines({"      4          cut           cut"});
}

TEST_F(SnapshotCommands, ATimeThatTheReadersZoneSkipsIsATime) {
  qputenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
  const auto back = qScopeGuard([] { qunsetenv("TZ"); });
  Write("a.txt", Changed({{3, "[time dd/mm/yyyy hh:mm:ss] 25/03/2007 02:30:00"}}));
  EXPECT_EQ(Run("trend a.txt --of rf_level -o t.csv"), 0) << m_err;
  EXPECT_NE(Load("t.csv").indexOf(",2007-03-25T02:30:00,43.2,"), -1) << Load("t.csv").toStdString();
  EXPECT_EQ(Run("list a.txt"), 0);
  EXPECT_EQ(m_out.substr(0, 21), "2007-03-25 02:30:00  ");
}

}  // namespace
}  // namespace tarnwell::test
