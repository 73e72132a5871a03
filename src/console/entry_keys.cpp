#include "console/entry_keys.h"

#include <algorithm>

namespace tarnwell::console {

namespace {

bool Passes(std::string_view keys, char16_t character) {
  return std::any_of(keys.begin(), keys.end(),
                     [character](char key) { return static_cast<unsigned char>(key) == character; });
}

char16_t Entering(std::string_view keys, char16_t character) {
  if (character == forms::KeyAscii::kBackspace) return character;
  const char16_t wanted = character == u'd' ? u'D' : character;
  return Passes(keys, wanted) ? wanted : forms::KeyAscii::kSwallowed;
}

}  // namespace

void TakeEntryKey(forms::KeyAscii& key, std::string_view keys, const std::function<void()>& commit,
                  const std::function<void()>& takeBack) {
  if (key.character == forms::KeyAscii::kEnter) commit();
  if (key.character == forms::KeyAscii::kEscape) takeBack();
  key.character = Entering(keys, key.character);
}

bool StepByKey(forms::UpDown& spin, int key) {
  const int direction = key == Qt::Key_Up ? 1 : key == Qt::Key_Down ? -1 : 0;
  const int before = spin.Value();
  spin.SetValue(before + direction * spin.Increment());
  return spin.Value() != before;
}

}  // namespace tarnwell::console
