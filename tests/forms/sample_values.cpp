#include "tests/forms/sample_values.h"

#include <QMenuBar>

namespace tarnwell::forms {

namespace {

/// Fills labels and text boxes from "name=value; name=value".
void Fill(Form& form, const char* samples) {
  for (const QString& sample : QString::fromUtf8(samples).split(QStringLiteral("; "))) {
    const QString name = sample.section(QLatin1Char('='), 0, 0);
    const QString text = sample.section(QLatin1Char('='), 1);
    auto* label = form.findChild<Label*>(name);
    auto* box = form.findChild<TextBox*>(name);
    if (label == nullptr && box == nullptr) qFatal("no field of the name %s", qPrintable(name));
    label != nullptr ? label->SetCaption(text) : box->SetText(text);
  }
}

void FillMain(frmMain& f) {
  Fill(f,
       "lblAlarm=ALARM; txtConnectAddress=31; txtGainAdjust=-12.5; lblRFLevel=-99.9 dBm; "
       "lblSSPAMute=RF Mute (Amp Module Fail); lblTempMod1=100.5°C; lblTempMod2=-10.5°C; "
       "lbl7316PathAState=SSPA1; lbl7316PathBState=UNKNOWN; lbl7316SSPA1State=ONLINE; "
       "lbl7316SSPA2State=STBY/ALARM; lbl7316SSPA3State=ONLINE");
  f.lblAlarm.SetBackground(QColor::fromRgb(kActiveColour));
  f.lbl7316SSPA1State.SetBackground(QColor::fromRgb(kGoodColour));
  f.lbl7316SSPA2State.SetBackground(QColor::fromRgb(kLatchedColour));
  f.lbl7316SSPA3State.SetBackground(QColor::fromRgb(kGoodColour));
  f.cmdConnect.SetCaption(QStringLiteral("Dis&connect"));
  f.fra7316PathASelect.SetCaption(QStringLiteral("Path &A SSPA Selection [Priority]"));
  f.imgOk.hide();
  f.optRFMute.Select();
  f.optOnline.Select();
  f.optREM.Select();
  f.opt7316Auto.Select();
}

void FillSettings(frmSettings& f) {
  Fill(f,
       "lblHWPlatform=0712/0358; lblFirmwareVersion=0264C-01 V6.0; txtSSPAAddress=31; txtRFMax=100.0; "
       "txtRFMin=-0.5; txtReflectedMax=100.0; lblRFLevel=45.0; txtRFVolts=2.345; txtRFLevelPoint=26; "
       "lblPiNLevel=-20.0; txtPiNDAC=255; txtPiNLevelPoint=41; txtTCTemp=-40.0; txtTCComp=-10.25; "
       "txtTempCompPoint=8; txtRFTCTemp=-40.0; txtRFTCComp=-10.25; txtRFTempCompPoint=3");
  for (QWidget* widget : f.Inner().findChildren<QWidget*>()) widget->setEnabled(true);
  f.optTxVorel.Select();
  f.optBeeperOn.Select();
}

void FillAlarms(frmAlarms& f) {
  Fill(f,
       "lbl5V=5.02V; lbl11V=11.3V; lbl14V=14.1V; lbl10V=-10.2V; lbl11VLC=11.2V; lblRF=-99.9dBm; "
       "lblReflected=-99.9dBm; lblTemp1=100.5°C; lblTemp2=-10.5°C");
  f.cmdAlarms(3)->SetBackground(QColor::fromRgb(kActiveColour));
  f.cmdAlarms(3)->SetCaption(QStringLiteral("A"));
  f.cmdAlarms(8)->SetBackground(QColor::fromRgb(kLatchedColour));
}

void FillOptions(frmOptions& f) {
  for (int port = 1; port <= 16; ++port) f.cboPort.addItem(QStringLiteral("COM%1").arg(port));
  f.cboPort.setCurrentIndex(11);
  f.cboSpeed.addItem(QStringLiteral("115200"));
  f.cboDataBits.addItem(QStringLiteral("8"));
  f.cboParity.addItem(QStringLiteral("None"));
  f.cboStopBits.addItem(QStringLiteral("1"));
  f.optRS4xx.Select();
  f.opt485Control(0)->Select();
  f.optFlow(0)->Select();
}

}  // namespace

SampleForms::SampleForms() {
  FillMain(main);
  FillSettings(settings);
  FillAlarms(alarms);
  FillOptions(options);
  snapshot.txtSnapShotID.SetText(QStringLiteral("Rack 3, upper amplifier, after the fan was changed"));
  snapshot.prgSaveSnapshot.setValue(60);
}

std::vector<Form*> SampleForms::All() { return {&main, &settings, &alarms, &options, &snapshot}; }

std::vector<Scene> Scenes(SampleForms& f) {
  frmMain& m = f.main;
  frmSettings& s = f.settings;
  frmOptions& o = f.options;
  return {{"main_amplifier", &m, {&m.fra7316Status}},
          {"main_controller", &m, {&m.fraRF, &m.fraState, &m.fraTemp}},
          {"settings_standard", &s, {&s.fraAdvanced, &s.fraFactory, &s.fra7316Config, &s.fra7316Priority}},
          {"settings_controller",
           &s,
           {&s.fraAdvanced, &s.fraFactory, &s.fraTransceiver, &s.fraThresholds, &s.fraReflectedThreshold, &s.lblHWPlat,
            &s.lblHWPlatform}},
          {"settings_advanced", &s, {&s.fraStandard, &s.fraFactory}},
          {"settings_factory", &s, {&s.fraStandard, &s.fraAdvanced}},
          {"alarms_amplifier", &f.alarms, {&f.alarms.fra7316Alarms}},
          {"alarms_controller", &f.alarms, {&f.alarms.fraAlarms}},
          {"options_communications", &o, {&o.fraGeneral}},
          {"options_general", &o, {&o.fraCommunications}},
          {"snapshot", &f.snapshot, {}}};
}

void ShowAt(SampleForms& forms, QSize main) {
  const Twips width = main.width() * kTwipsPerPixel;
  const Twips height = main.height() * kTwipsPerPixel;
  forms.main.SetInnerSize(width, height - forms.main.MenuBar().sizeHint().height() * kTwipsPerPixel);
  forms.settings.SetInnerSize(width, height);
  forms.alarms.SetInnerSize(width, height);
  forms.options.SetInnerSize(width * 3 / 4, height * 3 / 4);
  for (Form* form : forms.All()) form->Show();
}

void ShowScene(const Scene& scene, SampleForms& forms) {
  for (const Scene& other : Scenes(forms)) {
    if (other.form != scene.form) continue;
    for (QWidget* widget : other.hidden) {
      widget->show();
      widget->setEnabled(true);
    }
  }
  for (QWidget* widget : scene.hidden) widget->hide();
}

}  // namespace tarnwell::forms
