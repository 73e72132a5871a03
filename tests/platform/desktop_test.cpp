#include "platform/desktop.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWindow>

namespace tarnwell::platform {
namespace {

/// Shows the message, and `another` when it is about to come up. `look` runs on each box, and must close it; how many
/// came.
template <typename Look>
int Show(const Message& message, Look look, const std::optional<Message>& another = {}) {
  int seen = 0;
  ToolkitDesktop desktop;
  QTimer lookout;
  lookout.callOnTimeout([&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr || OnlyClosesAreTaken()) return;
    ++seen;
    look(*box);
    EXPECT_FALSE(box->isVisible());
    box->close();  // one that the keys left open would hold the test for ever
  });
  lookout.start(0);
  const auto showAnother = [&] { desktop.ShowMessage(*another); };
  if (another) QMetaObject::invokeMethod(&lookout, showAnother, Qt::QueuedConnection);
  desktop.ShowMessage(message);
  QTest::qWait(0);
  return seen;
}

TEST(Desktop, AWindowThatWasToCloseIsClosedAheadOfTheMessage) {
  QWidget window;
  window.show();
  QCoreApplication::postEvent(window.windowHandle(), new QCloseEvent);
  EXPECT_EQ(Show({QStringLiteral("Connection Failed")}, [](QMessageBox&) {}), 0) << "with no window left";
  EXPECT_FALSE(window.isVisible());
}

// Ahead of a message only requests to close are taken: no key would reach a box that came up then.
TEST(Desktop, AMessageThatComesWithAnotherIsShownBehindIt) {
  QWidget window;
  window.show();
  QStringList seen;
  const auto note = [&](QMessageBox& box) {
    seen << box.text();
    QTest::keyClick(&box, Qt::Key_Escape);
  };
  Show({QStringLiteral("Address Change Failed")}, note, Message{QStringLiteral("Not stored")});
  EXPECT_EQ(seen, QStringList({QStringLiteral("Address Change Failed"), QStringLiteral("Not stored")}));
}

TEST(Desktop, AMessageShowsItsTextsAsTheyAreAndClosesByKey) {
  const QString text = QStringLiteral("<b>Unable</b> to open COM1\x1B");
  const QString details = QStringLiteral("<i>/dev/ttyUSB0</i>: in use");
  const auto look = [&](QMessageBox& box) {
    EXPECT_EQ(box.icon(), QMessageBox::Warning);
    EXPECT_EQ(box.text(), QStringLiteral("<b>Unable</b> to open COM1\uFFFD"));
    EXPECT_EQ(box.informativeText(), details);
    for (const auto* label : box.findChildren<QLabel*>()) EXPECT_EQ(label->textFormat(), Qt::PlainText);
    EXPECT_TRUE(box.textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
    QTest::keyClick(&box, Qt::Key_Escape);
  };
  EXPECT_EQ(Show({text, MessageIcon::kWarning, details}, look), 1);
  QWidget window;
  window.show();
  QWindow other;  // as another program's: none of the program's windows is active
  other.show();
  other.requestActivate();
  const auto pressReturn = [&](QMessageBox& box) {
    EXPECT_EQ(box.parentWidget(), &window);
    QTest::keyClick(QApplication::focusWidget() == nullptr ? &box : QApplication::focusWidget(), Qt::Key_Return);
  };
  EXPECT_EQ(Show({text, MessageIcon::kCritical}, pressReturn), 1);
}

TEST(Desktop, TheFileDialogGivesThePathAsTyped) {
  const QTemporaryDir folder;
  const SaveDialog proposed{{QStringLiteral("All Files (*.*)"), QStringLiteral("Text Files(*.txt)")},
                            2,
                            folder.filePath(QStringLiteral("rack 2"))};
  const auto choose = [&](const QString& typed, Qt::Key key) {
    QTimer::singleShot(0, [&] {
      auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      EXPECT_EQ(dialog->nameFilters(), proposed.filters);
      EXPECT_EQ(dialog->selectedNameFilter(), proposed.filters[1]);
      EXPECT_EQ(dialog->directory(), QDir(folder.path()));
      auto* name = dialog->findChild<QLineEdit*>();
      EXPECT_EQ(name->text(), QStringLiteral("rack 2"));
      if (!typed.isEmpty()) name->setText(typed);
      QTest::keyClick(name, key);
      EXPECT_FALSE(dialog->isVisible());
      if (dialog->isVisible()) dialog->reject();  // it would hold the test for ever
    });
    return ToolkitDesktop().ChooseSaveFile(proposed);
  };
  EXPECT_EQ(choose({}, Qt::Key_Return), proposed.fileName) << "no extension is added";
  EXPECT_EQ(choose(QStringLiteral("b.c"), Qt::Key_Return), folder.filePath(QStringLiteral("b.c")));
  ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("rack 2")));
  EXPECT_EQ(choose({}, Qt::Key_Escape), std::nullopt) << "the name is proposed also where a folder has it";
}

TEST(Desktop, AFileIsProposedWhereItCanBeWritten) {
  const QTemporaryDir folder;
  const QString none = folder.filePath(QStringLiteral("none"));
  EXPECT_EQ(FirstWritable({none, folder.path()}), QDir::toNativeSeparators(folder.path()));
  EXPECT_EQ(FirstWritable({folder.path() + QStringLiteral("/x"), none}), QDir::toNativeSeparators(none));
}

TEST(Desktop, TheBusyPointerIsNotCounted) {
  for (const bool busy : {true, true, false}) {
    ToolkitDesktop().SetBusyPointer(busy);
    EXPECT_EQ(QApplication::overrideCursor() != nullptr, busy);
  }
}

}  // namespace
}  // namespace tarnwell::platform
