#include <unistd.h>

#include <QDateTime>
#include <QImage>
#include <QPainter>
#include <QTimeZone>
#include <QXmlStreamReader>

#include "tools/shared/files.h"
#include "tools/vorel-snapshot/plot.h"
#include "tools/vorel-snapshot/trend.h"
#include "vorel_snapshot/snapshot_commands.h"

namespace tarnwell::test {
namespace {

TEST_F(SnapshotCommands, PlotDrawsTheGoodPointsAndTellsTheOthers) {
  std::string file = Changed({{2, "[file description] R&D \"<2>\""},
                              {36, "[rf temp comp points (\xB0\x43,dB)] NA"},
                              {38, "[sys temp comp points (\xB0\x43,dB)] (20, 0), (30, D), (60, -1)"},
                              {41, "[rf level table (dBm,V)] (29, 1.64), (#ERR, #ERR), (31, 2.06), (32, D)"}});
  file[At(47, 79)] = 'x';
  Write("a.txt", file);
  std::string told;
  for (const auto& chart : vorel_snapshot::Charts({{QString(), vorel_snapshot::ReadSnapshot(file)}})) {
    told += chart.notes.join(QLatin1Char('+')).toStdString() + "|";
    for (const auto& run : chart.series.at(0).runs) told += std::to_string(run.size()) + " ";
    for (const double mark : chart.series.at(0).marked) told += "x" + std::to_string(static_cast<int>(mark));
    told += "\n";
  }
  EXPECT_EQ(told,
            "disabled: points 8, 23 to 26; not read: point 6|5 1 14 \n"
            "\xC3\x97 disabled: points 38 to 41; damaged: points 1 to 4|33 x37x38x39x40\n"
            "this amplifier has none|\n"
            "\xC3\x97 disabled: points 5, 7 to 8|4 1 x30\n");
  EXPECT_EQ(Run("plot a.txt -o p.png"), 1);
  EXPECT_EQ(QImage(m_folder.filePath(QStringLiteral("p.png"))).size(), QSize(2400, 1908))
      << "no place for what it lacks";
  EXPECT_EQ(Run("plot a.txt -o p.SVG"), 1);
  QXmlStreamReader svg(Load("p.SVG"));
  while (!svg.atEnd() && svg.name() != QLatin1String("title")) svg.readNext();
  EXPECT_EQ(svg.readElementText().toStdString(), "240W C-BAND   \xC2\xB7   R&D \"<2>\"");
  while (!svg.atEnd()) svg.readNext();
  EXPECT_FALSE(svg.hasError()) << svg.errorString().toStdString();
  EXPECT_EQ(Run("plot a.txt -o nowhere/p.png"), 2);
}

TEST_F(SnapshotCommands, PlotLaysTwoFilesOverEachOther) {
  const std::string before = Changed({{36, "[rf temp comp points (\xB0\x43,dB)] NA"}});
  const std::string after = Changed({{45, "[rf level table (dBm,V)] (45, 5.00), (46, 5.21), (47, 5.4), (D, D)"}});
  const auto page = vorel_snapshot::PlotPage({{QStringLiteral("a"), vorel_snapshot::ReadSnapshot(before)},
                                              {QStringLiteral("b"), vorel_snapshot::ReadSnapshot(after)}});
  ASSERT_TRUE(page.charts.size() == 4 && page.legend.size() == 2);
  QStringList told;
  for (const auto& chart : page.charts) told += chart.notes.join(QLatin1Char('+'));
  EXPECT_EQ(told.join(QLatin1Char('|')).toStdString(),
            "a: disabled: points 23 to 26+b: disabled: points 24 to 26|\xC3\x97 disabled: points 38 to 41|"
            "a: this amplifier has none+b: disabled: point 3|disabled: points 7 to 8");
  EXPECT_EQ(page.charts[0].series[0].runs[0].size() + 1, page.charts[0].series[1].runs[0].size());
  Write("a.txt", before);
  Write("b.txt", after);
  EXPECT_EQ(Run("plot a.txt b.txt -o p.png"), 0);
}

TEST_F(SnapshotCommands, TrendFollowsValuesOverTimeByDevice) {
  const auto at = [](const char* date, int address, const char* level, const char* max) {
    return Changed({{3, "[time dd/mm/yyyy hh:mm:ss] " + std::string(date) + " 10:00:00"},
                    {5, "[address] " + std::to_string(address)},
                    {13, "[rf level] " + std::string(level)},
                    {25, address == 10 ? "[9.3v rail] 9.31 V" : "[11v rail] 11.04 V"},
                    {17, "[rf max] " + std::string(max)}});
  };
  Write("f.d/z", at("01/02/2007", 2, "43.2 dBm", "47 dBm"));
  Write("f.d/y", at("01/03/2008", 2, "#ERR", "DISABLED"));
  Write("f.d/x", at("05/01/2009", 2, "42.9 dBm", "46 dBm"));
  Write("f.d/v", at("01/02/2008", 10, "40 dBm", "47 dBm").replace(At(17, 80), 1, "\x7F"));
  Write("f.d/w", at("31/02/2008", 10, "40 dBm", "47 dBm"));
  Write("f.d/c", SampleFile("controller.txt"));
  EXPECT_EQ(Run("trend f.d --of rf_level --of rf_max --of 9.3v_rail --of pin_diode_table:3 -o t.csv"), 1);
  EXPECT_NE(m_err.find("f.d/w: left out"), std::string::npos) << m_err;
  QString told = QString::fromUtf8(Load("t.csv")).remove(m_folder.path() + QStringLiteral("/f.d/"));
  told.remove(QStringLiteral(",\"240W C-BAND, address")).replace(QStringLiteral("\",2"), QStringLiteral(" 2"));
  told.replace(QStringLiteral("T10:00:00,"), QStringLiteral(" "));
  EXPECT_EQ(told.toStdString(),
            "value,device,time,number,unit,state,file\n"
            "rf level 2 2007-02-01 43.2,dBm,,z\nrf level 2 2008-03-01 ,dBm,#ERR,y\nrf level 2 2009-01-05 42.9,dBm,,x\n"
            "rf level 10 2008-02-01 40,dBm,,v\n"
            "rf max 2 2007-02-01 47,dBm,,z\nrf max 2 2008-03-01 ,dBm,disabled,y\nrf max 2 2009-01-05 46,dBm,,x\n"
            "rf max 10 2008-02-01 ,dBm,damaged,v\n"
            "9.3v rail 2 2007-02-01 ,V,NA,z\n9.3v rail 2 2008-03-01 ,V,NA,y\n9.3v rail 2 2009-01-05 ,V,NA,x\n"
            "9.3v rail 10 2008-02-01 9.31,V,,v\n"
            "\"pin diode table, point 3\" 2 2007-02-01 24,,,z\n\"pin diode table, point 3\" 2 2008-03-01 24,,,y\n"
            "\"pin diode table, point 3\" 2 2009-01-05 24,,,x\n\"pin diode table, point 3\" 10 2008-02-01 24,,,v\n");
  EXPECT_EQ(Run("trend f.d --of rf_level -o t.png"), 1);
  EXPECT_EQ(QImage(m_folder.filePath(QStringLiteral("t.png"))).width(), 2400);
  EXPECT_EQ(Run("trend f.d/c -o u.svg"), 3);
  EXPECT_EQ(Run("trend f.d --of rf_level_table:27 -o t.svg"), 2);
}

TEST_F(SnapshotCommands, TrendDrawsACurveADeviceWithAGapWhereAValueIsMissing) {
  vorel_snapshot::Trend trend({*vorel_snapshot::FindQuantity(QStringLiteral("rf max"))},
                              vorel_snapshot::Device::kFolder);
  for (const auto& [bytes, line] : {std::pair{"b/1", "47 dBm"},
                                    {"a/2", "46 dBm"},
                                    {"./a/1", "46 dBm"},
                                    {"b/../a/3", "DISABLED"},
                                    {"a/4", "45 dBm"},
                                    {"\xE9/1", "47 dBm"},
                                    {"\xE8/1", "47 dBm"}}) {
    const QString path = tools::NameFromBytes(bytes);
    const std::string time = "[time dd/mm/yyyy hh:mm:ss] 0" + path.right(1).toStdString() + "/01/2007 10:00:00";
    const std::string file = Changed({{3, time}, {17, "[rf max] " + std::string(line)}});
    const QString name = tools::ShownName(path);
    EXPECT_EQ(trend.Add({name, path, true, vorel_snapshot::ReadSnapshot(file)}).toStdString(), "");
  }
  trend.Finish();
  const auto page = trend.Picture();
  EXPECT_EQ(page.legend.join(QLatin1Char('|')).toStdString(), "a|b|\xEF\xBF\xBD|\xEF\xBF\xBD (2)");
  const auto& series = page.charts.at(0).series;
  ASSERT_TRUE(series.at(0).runs.size() == 2 && series.at(3).runs.size() == 1);
  EXPECT_TRUE(series[0].runs[0].size() == 2 && series[0].marked.size() == 1 && series[3].runs[0].size() == 1);
  EXPECT_EQ(page.charts[0].notes.value(0).toStdString(), "\xC3\x97 disabled: 1");
}

TEST(SnapshotPages, ShowEachOfFiveEqualCurves) {
  tools::Page sheet;
  sheet.charts.resize(1);
  sheet.charts[0].timeAcross = true;
  // One device is asked after the other, on two days.
  for (int i = 0; i < 5; ++i) sheet.charts[0].series.push_back({{QPolygonF({{60.0 * i, 1}, {86400 + 60.0 * i, 1}})}});
  const QImage page = QImage::fromData(tools::DrawPage(sheet, QStringLiteral("png")));
  for (std::size_t device = 0; device < 5; ++device) {
    QImage sample(44, 44, QImage::Format_RGB32);
    QPainter painter(&sample);
    tools::DrawSample(painter, sample.rect(), device);
    painter.end();
    const QRgb colour = sample.pixel(22, 22);
    int seen = 0;
    for (int y = 300; y < page.height(); ++y)
      for (int x = 0; x < page.width(); ++x) seen += page.pixel(x, y) == colour ? 1 : 0;
    EXPECT_GT(seen, 100) << device;
  }
}

TEST_F(SnapshotCommands, ChartsHaveRoomForAnyNumber) {
  for (const auto& [level, tick] :
       {std::pair{"99999999999999999999", "1e20"}, {"-12345678", "−1.2e7"}, {"43", "42.5"}}) {
    Write("a.txt", Changed({{13, "[rf level] " + std::string(level) + " dBm"}}));
    EXPECT_EQ(Run("trend a.txt --of rf_level -o t.svg"), 0);
    EXPECT_TRUE(!Load("t.svg").contains("nan") && Load("t.svg").contains('>' + QByteArray(tick) + '<')) << tick;
  }
}

TEST(SnapshotTicks, OfDatesAreRound) {
  const auto seconds = [](int year, int month, int day, int hour) {
    return static_cast<double>(
        QDateTime(QDate(year, month, day), QTime(hour, 30), QTimeZone::utc()).toSecsSinceEpoch());
  };
  const auto told = [](double least, double greatest) {
    QStringList texts;
    for (const auto& tick : tools::MakeDateTicks(least, greatest, 5)) texts += tick.text;
    return texts.join(QLatin1Char(' ')).toStdString();
  };
  EXPECT_EQ(told(seconds(2007, 3, 14, 8), seconds(2007, 3, 14, 21)),
            "03-14 09:00 03-14 12:00 03-14 15:00 03-14 18:00 03-14 21:00");
  EXPECT_EQ(told(seconds(2024, 2, 27, 8), seconds(2024, 3, 2, 21)), "2024-02-28 2024-02-29 2024-03-01 2024-03-02");
  EXPECT_EQ(told(seconds(1, 1, 1, 0), seconds(9999, 12, 31, 23)), "1000 2000 3000 4000 5000 6000 7000 8000 9000");
}

}  // namespace
}  // namespace tarnwell::test
