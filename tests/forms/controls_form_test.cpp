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
    QApplication::setQuitOnLastWindowClosed(false);
    QObject::connect(&form, &Form::Load, &form, [this] { form.Note("Load"); });
    QObject::connect(&form, &Form::Resize, &form, [this] { form.Note("Resize"); });
    QObject::connect(&form, &Form::Activate, &form, [this] { form.Note("Activate"); });
    QObject::connect(&form, &Form::Unload, &form, [this] { form.Note("Unload"); });
  }

  TestForm form;
};

/// Runs `action` from the event loop that is running then.
template <typename Action>
void Later(Form& form, Action action) {
  QMetaObject::invokeMethod(&form, action, Qt::QueuedConnection);
}

TEST_F(FormTest, LivesOnceFromLoadToUnload) {
  form.Show();
  BringToFront(form);
  EXPECT_EQ(form.Transcript(), "Load Resize Activate");
  QObject::connect(&form, &Form::Unload, &form, [this] { form.UnloadForm(); });
  form.windowHandle()->close();
  form.UnloadForm();
  form.Show();
  EXPECT_EQ(form.Transcript(), "Unload");
  EXPECT_FALSE(form.isVisible());
}

TEST_F(FormTest, UnloadedInLoadItIsNeverShown) {
  QObject::connect(&form, &Form::Load, &form, [this] { form.UnloadForm(); });
  form.ShowModal();
  EXPECT_EQ(form.Transcript(), "Load Unload");
  EXPECT_FALSE(form.isVisible());
}

TEST_F(FormTest, ShowModalHoldsItsCallerUntilTheFormIsUnloaded) {
  Later(form, [this] {
    EXPECT_TRUE(form.isModal());
    form.HideAndShow();
    Later(form, [this] {
      EXPECT_TRUE(form.isVisible());
      form.UnloadForm();
      EXPECT_FALSE(form.isVisible());
      form.Note("handler");
    });
  });
  form.ShowModal();
  form.Note("returned");
  EXPECT_TRUE(QString::fromStdString(form.Transcript()).endsWith(QLatin1String("Unload handler returned")));
}

TEST_F(FormTest, HidingAndShowingEndsAHeldPopupButNotTheProgram) {
  QApplication::setQuitOnLastWindowClosed(true);
  form.Show();
  QMenu popup(&form);
  popup.addAction(QStringLiteral("Entry"));
  Later(form, [&] {
    popup.popup(QPoint(0, 0));
    form.HideAndShow();
    EXPECT_FALSE(popup.isVisible());
    QTimer::singleShot(10, &form, [] { QCoreApplication::exit(7); });
  });
  EXPECT_EQ(QCoreApplication::exec(), 7);
  EXPECT_TRUE(form.isVisible());
  Later(form, [this] { form.UnloadForm(); });
  EXPECT_EQ(QCoreApplication::exec(), 0) << "the last form that goes ends the program";
  QApplication::setQuitOnLastWindowClosed(false);
}

TEST_F(FormTest, InnerSizeIsInTwipsBelowTheMenuBar) {
  Menu file("mnuFile", form, "&File");
  Menu exit("mnuExit", file, "E&xit");
  QObject::connect(&exit, &Menu::Click, &form, [this] { form.Note("Exit"); });
  form.SetInnerSize(9600, 6960);
  EXPECT_EQ(form.Transcript(), "Resize") << "at once";
  form.Show();
  BringToFront(form);
  EXPECT_EQ(QSize(form.ScaleWidth(), form.ScaleHeight()), QSize(9600, 6960));
  EXPECT_EQ(form.Inner().y(), form.MenuBar().height());
  EXPECT_EQ(form.minimumSize(), form.maximumSize());
  EXPECT_EQ(form.Transcript(), "Load Activate") << "the size is the one that was raised";
  Key(Qt::Key_F, Qt::AltModifier);
  QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_X);
  exit.setEnabled(false);
  form.findChild<QAction*>(QStringLiteral("mnuExit"))->trigger();
  EXPECT_EQ(form.Transcript(), "Exit");
  form.Show();
  BringToFront(form);
  Key(Qt::Key_F10);
  EXPECT_NE(form.findChild<QMenuBar*>()->activeAction(), nullptr);
}

TEST_F(FormTest, AFormThatCanBeSizedSaysSoAlsoWhenItIsRestored) {
  Form sizable("frmMain", "", Form::Border::kFixedSingle, 9510, 6960, Form::TitleButtons::kMinimiseMaximise, 9.75);
  int resizes = 0;
  QObject::connect(&sizable, &Form::Resize, &sizable, [&] { ++resizes; });
  sizable.Show();
  sizable.showMinimized();
  resizes = 0;
  sizable.SetInnerSize(9000, 6000);
  EXPECT_EQ(resizes, 0);
  sizable.showNormal();
  EXPECT_EQ(resizes, 1);
  sizable.showMaximized();
  Settle();
  EXPECT_GT(sizable.ScaleWidth(), 9510);
  EXPECT_EQ(resizes, 2);
}

TEST_F(FormTest, MeasuresInItsMeasuringFontAlone) {
  form.SetMeasuringFont(form.cmdConnect.font());
  ASSERT_TRUE(form.SetMeasuringFontSize(20));
  EXPECT_FALSE(form.SetMeasuringFontSize(0) || form.SetMeasuringFontSize(400.25));
  EXPECT_GT(form.TextHeight(QStringLiteral("x")), 20.0 * 20);  // a point is 20 twips, and a line is more
  EXPECT_LT(form.TextHeight(QStringLiteral("x")), 20.0 * 30);
  EXPECT_EQ(FontSize(form.cmdConnect), kDefaultPoints);
}

TEST_F(FormTest, AMessageIsNotClosedByAKeyThatWasHeldBefore) {
  form.Show();
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
    QMessageBox box(&form);
    box.setText(QStringLiteral("Unable to use COM3"));
    box.open();
    QWidget& receiver = box.focusWidget() != nullptr ? *box.focusWidget() : box;
    QKeyEvent repeat(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
    QCoreApplication::sendEvent(&receiver, &repeat);
    EXPECT_TRUE(box.isVisible());
    QTest::keyClick(&receiver, key);
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
