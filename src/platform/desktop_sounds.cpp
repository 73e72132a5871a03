#include "platform/alarm_sound.h"

#ifdef TARNWELL_CANBERRA
#include <canberra.h>

#include <QCoreApplication>
#include <memory>
#include <string>
#include <utility>
#endif

namespace tarnwell::platform {

#ifdef TARNWELL_CANBERRA

namespace {

/// The desktop's sound that is short: an alarm sounds anew every 0.75 s, and the theme's alarm clock lasts 6 s.
constexpr const char* kDesktopsEvent = "dialog-warning";
constexpr const char* kOwnEvent = "tarnwell-alarm";  ///< no theme has it

class ServerSound {
 public:
  explicit ServerSound(std::string ownFile) : m_ownFile(std::move(ownFile)) {}

  AlarmSound operator()(bool aloud) {
    if (m_context == nullptr) m_context.reset(Connect());
    if (Try(aloud, kDesktopsEvent, {})) return AlarmSound::kDesktops;
    if (Try(aloud, kOwnEvent, m_ownFile)) return AlarmSound::kOwn;
    m_context.reset();  // it doesn't find back to a server that was started anew
    return AlarmSound::kSystemBeep;
  }

 private:
  struct Destroy {
    void operator()(ca_context* context) const { ca_context_destroy(context); }
  };

  /// By no other driver: ALSA's writes what it misses to the standard error, at each try.
  static ca_context* Connect() {
    ca_context* context = nullptr;
    if (ca_context_create(&context) == CA_SUCCESS) ca_context_set_driver(context, "pulse");
    return context;
  }

  /// `file` is played where no theme has the event. To look is to have the server keep the sound for later.
  bool Try(bool aloud, const char* event, const std::string& file) {
    ca_context* const context = m_context.get();
    if (context == nullptr) return false;
    return CA_SUCCESS ==
           (aloud ? ca_context_play(context, 0, CA_PROP_EVENT_ID, event, CA_PROP_MEDIA_FILENAME, file.c_str(), nullptr)
                  : ca_context_cache(context, CA_PROP_EVENT_ID, event, CA_PROP_MEDIA_FILENAME, file.c_str(), nullptr));
  }

  std::string m_ownFile;
  std::unique_ptr<ca_context, Destroy> m_context;
};

}  // namespace

Sounder::Source DesktopSounds() {
  const std::string folder = QCoreApplication::applicationDirPath().toStdString();
  auto sound = std::make_shared<ServerSound>(folder + "/" TARNWELL_SOUND_FILE);
  return [sound](bool aloud) { return (*sound)(aloud); };
}

#else

Sounder::Source DesktopSounds() { return {}; }

#endif

}  // namespace tarnwell::platform
