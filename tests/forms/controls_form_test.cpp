#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QTimer>

#include "forms/controls/menu_entry.h"
#include "forms/test_form.h"

namespace tarnwell::forms {
namespace {

/// A form whose life is noted in its transcript.
class FormTest : public testing::Test {
 protected:
  void SetUp() override {
    QObject::connect(&form, &Form::Load, &form, [this] { form.Note("Load"); });
    QObject::connect(&form, &Form::Resize, &form, [this] { form.Note("Resize"); });
    QObject::connect(&form, &Form::Activate, &form, [this] { form.Note("Activate"); });
    QObject::connect(&form, &Form::Unload, &form, [this] { form.Note("Unload"); });
  }

  TestForm form;
};

TEST_F(FormTest, LivesOnceFromLoadToUnload) {
  TestForm stillborn;
  QObject::connect(&stillborn, &Form::Load, &stillborn, [&] { stillborn.UnloadForm(); });
  stillborn.ShowModal();
  EXPECT_FALSE(stillborn.isVisible());
  form.Show();
  form.Expect("return -> Load Resize Activate");
  QObject::connect(&form, &Form::Unload, &form, [this] { form.UnloadForm(); });
  form.windowHandle()->close();
  form.UnloadForm();
  form.Show();
  EXPECT_TRUE(form.Transcript() == "Unload" && !form.isVisible());
}

TEST_F(FormTest, ShowModalHoldsItsCallerUntilTheFormIsUnloaded) {
  QTimer::singleShot(0, &form, [this] {
    EXPECT_TRUE(form.isModal());
    form.HideAndShow();
    form.Transcript();
    QTimer::singleShot(0, &form, [this] { form.UnloadForm(); });
  });
  form.ShowModal();
  form.Note("returned");
  EXPECT_EQ(form.Transcript(), "Unload returned");
}

TEST_F(FormTest, HidingAndShowingEndsAHeldPopupButNotTheProgram) {
  QApplication::setQuitOnLastWindowClosed(true);
  form.Show();
  QMenu popup(&form);
  popup.addAction(QStringLiteral("Entry"));
  QTimer::singleShot(0, &form, [&] {
    popup.popup(QPoint(0, 0));
    form.HideAndShow();
    EXPECT_TRUE(form.isVisible() && !popup.isVisible());
    EXPECT_TRUE(form.testAttribute(Qt::WA_Moved)) << "the place is the form's own, not the window system's to choose";
    QTimer::singleShot(10, &form, [this] {
      form.Transcript();
      form.UnloadForm();
    });
  });
  QCoreApplication::exec();
  EXPECT_EQ(form.Transcript(), "Unload") << "the last form that goes ends the program";
}

TEST_F(FormTest, InnerSizeIsInTwipsBelowTheMenuBar) {
  Menu file("mnuFile", form, "&File");
  Menu exit("mnuExit", file, "E&xit");
  QObject::connect(&exit, &Menu::Click, &form, [this] { form.Note("Exit"); });
  form.SetInnerSize(9600, 6960);
  EXPECT_EQ(form.Transcript(), "Resize") << "at once";
  form.Show();
  form.Expect("return -> Load Activate");  // the size is the one that was raised
  EXPECT_TRUE(form.ScaleWidth() == 9600 && form.ScaleHeight() == 6960 && form.minimumSize() == form.maximumSize());
  EXPECT_EQ(form.Inner().y(), form.MenuBar().height());
  Key(Qt::Key_F, Qt::AltModifier);
  QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_X);
  Settle();
  exit.setEnabled(false);
  form.findChild<QAction*>(QStringLiteral("mnuExit"))->trigger();
  form.Expect("F10 -> Exit");
  EXPECT_NE(form.MenuBar().activeAction(), nullptr);
}

TEST_F(FormTest, AFormThatCanBeSizedSaysSoAlsoWhenItIsRestored) {
  Form sizable("frmMain", "", Form::Border::kFixedSingle, 9510, 6960, Form::TitleButtons::kMinimiseMaximise, 9.75);
  sizable.Show();
  sizable.showMinimized();
  QObject::connect(&sizable, &Form::Resize, &form, [this] { form.Note("Resize"); });
  sizable.SetInnerSize(9000, 6000);
  form.Note("restored");
  sizable.showNormal();
  form.Note("maximised");
  sizable.showMaximized();
  Settle();
  EXPECT_GT(sizable.ScaleWidth(), 9510);
  EXPECT_EQ(form.Transcript(), "restored Resize maximised Resize");
}

TEST_F(FormTest, MeasuresInItsMeasuringFontAloneAndAFrameKeepsItsFontForItself) {
  ASSERT_TRUE(form.SetMeasuringFontSize(20));
  EXPECT_FALSE(form.SetMeasuringFontSize(0) || form.SetMeasuringFontSize(400.25));
  SetFontSize(form.fraState, 6);
  SetBold(form.fraState, true);
  EXPECT_TRUE(FontSize(form.optOnline) == kDefaultPoints && !Bold(form.optOnline));
}

TEST_F(FormTest, AMessageIsNotClosedByAKeyThatWasHeldBefore) {
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
    QMessageBox box(&form);
    box.open();
    PostRepeats(box, key, 1);
    Settle();
    EXPECT_TRUE(box.isVisible());
    QTest::keyClick(&box, key);
    EXPECT_FALSE(box.isVisible());
  }
}

TEST_F(FormTest, ATitleIsShownAsGivenWithoutControlCharacters) {
  form.Show();
  form.SetTitle(QStringLiteral("A\x07M\nP [*] [*][*]"));
  EXPECT_EQ(form.Title(), QStringLiteral("A\uFFFDM\uFFFDP [*] [*][*]"));
  EXPECT_EQ(form.windowHandle()->title(), form.Title());
}

}  // namespace
}  // namespace tarnwell::forms
