#include "forms/controls/drawing.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#include <QSvgRenderer>

namespace tarnwell::forms {
namespace {

class SvgEngine : public QIconEngine {
 public:
  explicit SvgEngine(const QString& path) : m_path(path), m_drawing(path) {
    m_drawing.setAspectRatioMode(Qt::KeepAspectRatio);
  }

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    if (mode == QIcon::Normal) return m_drawing.render(painter, rect);
    const double scale = painter->device()->devicePixelRatioF();
    painter->drawPixmap(rect, pixmap(rect.size() * scale, mode, state));
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    m_drawing.render(&painter);
    painter.end();
    const QStyleOption option;
    return mode == QIcon::Normal ? pixmap : QApplication::style()->generatedIconPixmap(mode, pixmap, &option);
  }

  QIconEngine* clone() const override { return new SvgEngine(m_path); }

 private:
  QString m_path;
  QSvgRenderer m_drawing;
};

}  // namespace

QIcon Drawing(const QString& path) { return QIcon(new SvgEngine(path)); }

}  // namespace tarnwell::forms
