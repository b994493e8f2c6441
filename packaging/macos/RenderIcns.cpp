// Renders the application's icon for macOS at build time: RenderIcns SVG ICNS
#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtCore/QString>
#include <QtCore/QtEndian>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>
#include <array>
#include <cstdlib>

namespace {

struct Part {
  const char* type;
  int side;
};

// The parts of an .icns file that hold PNG files, and their pixels; from 32 on, as `iconutil` makes them. The
// system scales the two smallest, which have formats of their own, from these.
constexpr std::array<Part, 8> parts{{{"ic11", 32},
                                     {"ic12", 64},
                                     {"ic07", 128},
                                     {"ic13", 256},
                                     {"ic08", 256},
                                     {"ic14", 512},
                                     {"ic09", 512},
                                     {"ic10", 1024}}};

QByteArray rendered(QSvgRenderer& renderer, int side) {
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  renderer.render(&painter);
  painter.end();
  QByteArray png;
  QBuffer buffer(&png);
  image.save(&buffer, "PNG");
  return png;
}

/// A type, the size of both and the content, and the content.
QByteArray part(const char* type, const QByteArray& content) {
  const quint32 size = qToBigEndian(static_cast<quint32>(content.size() + 8));
  return QByteArray(type, 4) + QByteArray(reinterpret_cast<const char*>(&size), 4) + content;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return EXIT_FAILURE;
  QSvgRenderer renderer(QString::fromLocal8Bit(argv[1]));
  if (!renderer.isValid()) return EXIT_FAILURE;
  QByteArray content;
  for (const auto& [type, side] : parts) content += part(type, rendered(renderer, side));
  QFile file(QString::fromLocal8Bit(argv[2]));
  const QByteArray icon = part("icns", content);
  return file.open(QIODevice::WriteOnly) && file.write(icon) == icon.size() ? EXIT_SUCCESS : EXIT_FAILURE;
}
