// The icon that the helper shows clients stands in the tree as a picture, because the helper is built without
// Qt. It has to stay the picture of the application's icon.
#include <gtest/gtest.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include "VelmoraHelper/Mcp/ServerIcon.h"

namespace velmora {
namespace {

TEST(ServerIcon, ShowsTheApplicationsIcon) {
  const auto picture =
      QImage::fromData(QByteArray(serverIcon.data(), static_cast<qsizetype>(serverIcon.size())), "PNG");
  ASSERT_EQ(picture.size(), QSize(64, 64));
  QSvgRenderer renderer(QStringLiteral(VELMORA_PACKAGING "/linux/icons/app.velmora.Velmora.svg"));
  ASSERT_TRUE(renderer.isValid());
  QImage drawn(picture.size(), QImage::Format_ARGB32_Premultiplied);
  drawn.fill(Qt::transparent);
  QPainter painter(&drawn);
  renderer.render(&painter);
  painter.end();

  // Releases of Qt draw the edges of shapes a little differently.
  int differing = 0;
  for (int y = 0; y < drawn.height(); ++y) {
    for (int x = 0; x < drawn.width(); ++x) {
      const auto a = drawn.pixelColor(x, y);
      const auto b = picture.pixelColor(x, y);
      const bool isAlike = qAbs(a.red() - b.red()) < 16 && qAbs(a.green() - b.green()) < 16 &&
                           qAbs(a.blue() - b.blue()) < 16 && qAbs(a.alpha() - b.alpha()) < 16;
      if (!isAlike) ++differing;
    }
  }
  EXPECT_LT(differing, 64)
      << "make packaging/mcp/icon.png again: RenderIcon app.velmora.Velmora.svg 64 icon.png";
}

}  // namespace
}  // namespace velmora
