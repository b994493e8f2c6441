// Renders the application's icon at build time: RenderIcon SVG SIZE PNG
#include <QtCore/QString>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>
#include <cstdlib>

int main(int argc, char** argv) {
  if (argc != 4) return EXIT_FAILURE;
  QSvgRenderer renderer(QString::fromLocal8Bit(argv[1]));
  const int size = QString::fromLocal8Bit(argv[2]).toInt();
  QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
  if (!renderer.isValid() || image.isNull()) return EXIT_FAILURE;
  image.fill(Qt::transparent);
  QPainter painter(&image);
  renderer.render(&painter);
  painter.end();
  return image.save(QString::fromLocal8Bit(argv[3]), "PNG") ? EXIT_SUCCESS : EXIT_FAILURE;
}
