#include "ui/Icon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

namespace quillary {

namespace {

constexpr char kTextColor[] = "currentColor";

class DrawingEngine : public QIconEngine {
  public:
    explicit DrawingEngine(QByteArray drawing) : m_drawing(std::move(drawing)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText;
        QByteArray colored = m_drawing;
        colored.replace(kTextColor, QGuiApplication::palette().color(group, role).name().toLatin1());
        QSvgRenderer(colored).render(painter, rect);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        return pixmap;
    }
    [[nodiscard]] QIconEngine* clone() const override { return new DrawingEngine(m_drawing); }

  private:
    QByteArray m_drawing;
};

}  // namespace

QIcon Icon(std::string_view name) {
    QFile file(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name.data(), static_cast<int>(name.size()))));
    return file.open(QIODevice::ReadOnly) ? QIcon(new DrawingEngine(file.readAll())) : QIcon();
}

QIcon ProgramIcon() { return Icon("org.telvane.quillary"); }

}  // namespace quillary
