#include "platform/input_clock.h"

#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <QHash>
#include <algorithm>
#include <chrono>
#include <deque>

#if QT_CONFIG(xcb)
#include <xcb/xcb.h>

#include <cstdlib>
#endif

namespace tarnwell::platform {

namespace {

constexpr Moment kLongestDelay = 60'000;
constexpr Moment kDriftsOneIn = 10'000;  ///< the clocks of two machines differ by less

#if QT_CONFIG(xcb)

xcb_atom_t Atom(xcb_connection_t* connection, std::string_view name) {
  const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
      xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
  return reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

/// Notes time stamps of the X server that the toolkit doesn't hand on: those of requests to close a window, and of keys
/// let go, which it keeps to itself while it asks an assistive tool about them.
class ServerStamps final : public QAbstractNativeEventFilter {
 public:
  explicit ServerStamps(xcb_connection_t* connection)
      : m_protocols(Atom(connection, "WM_PROTOCOLS")), m_deleteWindow(Atom(connection, "WM_DELETE_WINDOW")) {
    qApp->installNativeEventFilter(this);
  }

  bool nativeEventFilter(const QByteArray& /*type*/, void* message, qintptr* /*result*/) override {
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int type = event->response_type & 0x7F;
    if (type == XCB_KEY_RELEASE) NoteRelease(reinterpret_cast<const xcb_key_release_event_t*>(event)->time);
    if (type != XCB_CLIENT_MESSAGE) return false;
    const auto* request = reinterpret_cast<const xcb_client_message_event_t*>(event);
    if (request->type == m_protocols && request->data.data32[0] == m_deleteWindow) {
      m_stamps.insert(request->window, request->data.data32[1]);
    }
    return false;
  }

  quint64 TakeClose(WId window) { return m_stamps.take(static_cast<xcb_window_t>(window)); }
  bool LetGo(quint64 stamp) const {
    return stamp != 0 && std::find(m_released.begin(), m_released.end(), stamp) != m_released.end();
  }

 private:
  static constexpr std::size_t kReleases = 1000;  ///< more than a key that is held repeats while the line is held

  void NoteRelease(quint64 stamp) {
    m_released.push_back(stamp);
    if (m_released.size() > kReleases) m_released.pop_front();
  }

  xcb_atom_t m_protocols;
  xcb_atom_t m_deleteWindow;
  QHash<xcb_window_t, std::uint32_t> m_stamps;
  std::deque<quint64> m_released;
};

#endif

class SystemClock final : public InputClock {
 public:
  SystemClock() {
    const bool xcb = QGuiApplication::platformName() == QLatin1String("xcb");
    m_stamps = xcb || QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
#if QT_CONFIG(xcb)
    if (xcb) m_seen.emplace(qApp->nativeInterface<QNativeInterface::QX11Application>()->connection());
#endif
  }

  Moment Now() override {
    using std::chrono::milliseconds, std::chrono::steady_clock, std::chrono::duration_cast;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
  }

  // An event that another program sent bears the stamp 0.
  std::optional<Moment> Made(quint64 stamp) override {
    if (!m_stamps || stamp == 0) return std::nullopt;
    return m_server.ToMoment(static_cast<std::uint32_t>(stamp), Now());
  }

  bool LetGo(quint64 stamp) const override {
#if QT_CONFIG(xcb)
    return m_seen && m_seen->LetGo(stamp);
#else
    Q_UNUSED(stamp)
    return false;
#endif
  }

  std::optional<Moment> CloseAsked(const QWindow& window) override {
#if QT_CONFIG(xcb)
    if (m_seen) return Made(m_seen->TakeClose(window.winId()));
#else
    Q_UNUSED(window)
#endif
    return std::nullopt;
  }

 private:
  bool m_stamps;  ///< the system stamps an input when it is made, not when it is fetched
  ServerTime m_server;
#if QT_CONFIG(xcb)
  std::optional<ServerStamps> m_seen;
#endif
};

}  // namespace

Moment ServerTime::ToMoment(std::uint32_t stamp, Moment now) {
  const std::uint32_t apart = static_cast<std::uint32_t>(now) - stamp;
  if (!m_apart) {
    m_apart = apart;
    m_grownAt = now;
  }
  const Moment drift = (now - m_grownAt) / kDriftsOneIn;
  *m_apart += static_cast<std::uint32_t>(drift);
  m_grownAt += drift * kDriftsOneIn;

  const Moment late = static_cast<std::int32_t>(apart - *m_apart);
  if (late < 0 || late > kLongestDelay) m_apart = apart;
  return now - std::max<Moment>(late, 0);
}

std::unique_ptr<InputClock> SystemInputClock() { return std::make_unique<SystemClock>(); }

}  // namespace tarnwell::platform
