#include "fakes.h"

#include "engine/cef_manager.h"
#include "render/frame_buffer_pool.h"
#include "render/render_handler.h"

#include <QSignalSpy>
#include <QWidget>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <deque>
#include <memory>

namespace
{
constexpr uint32_t kBlue = 0xff0000ff;
constexpr uint32_t kRed = 0xffff0000;
constexpr uint32_t kGreen = 0xff00ff00;

struct Published
{
    QImage image;
    QVector<QRect> dirty;
};

class RenderHandlerTest : public ::testing::Test
{
protected:
    RenderHandlerTest()
    {
        view->resize(200, 100);
        handler = new RenderHandler(view.get());
        QObject::connect(handler.get(), &RenderHandler::viewUpdated,
                         [this](QImage image, QVector<QRect> dirty) { published.push_back({image, dirty}); });
    }

    // A frame of one colour, as the engine hands it over.
    std::vector<uint32_t>& frame(int width, int height, uint32_t colour)
    {
        buffers.emplace_back(static_cast<size_t>(width) * height, colour);
        return buffers.back();
    }

    void paint(CefRenderHandler::PaintElementType type, int width, int height, uint32_t colour,
               const CefRenderHandler::RectList& dirty = {})
    {
        handler->OnPaint(browser.get(), type, dirty, frame(width, height, colour).data(), width, height);
    }

    CefRect viewRect()
    {
        CefRect rect;
        handler->GetViewRect(browser.get(), rect);
        return rect;
    }

    std::unique_ptr<QWidget> view = std::make_unique<QWidget>();
    CefRefPtr<RenderHandler> handler;
    CefRefPtr<TestBrowser> browser = new TestBrowser(1, false);
    std::vector<Published> published;
    std::deque<std::vector<uint32_t>> buffers;
};

TEST_F(RenderHandlerTest, RefusesAtMostThreeStaleFramesInARow)
{
    const CefRect rect = viewRect();
    EXPECT_EQ(rect.width, 200);
    EXPECT_EQ(rect.height, 100);

    // A popup frame counts against the same limit.
    paint(PET_VIEW, 300, 100, kBlue);
    paint(PET_POPUP, 20, 10, kRed);
    paint(PET_VIEW, 300, 100, kBlue);
    EXPECT_TRUE(published.empty());
    paint(PET_VIEW, 300, 100, kBlue);
    ASSERT_EQ(published.size(), 1u);
    EXPECT_EQ(published[0].image.size(), QSize(300, 100));

    // The gate stays open until the next promise.
    paint(PET_VIEW, 150, 50, kBlue);
    EXPECT_EQ(published.size(), 2u);

    // The promised size passes at once and opens the gate as well.
    viewRect();
    paint(PET_VIEW, 300, 100, kBlue);
    paint(PET_VIEW, 200, 100, kBlue);
    paint(PET_VIEW, 300, 100, kBlue);
    ASSERT_EQ(published.size(), 4u);
    EXPECT_EQ(published[2].image.size(), QSize(200, 100));
}

TEST_F(RenderHandlerTest, FrameIsCopiedOnceAndSharedWithTheStoredFrame)
{
    EXPECT_EQ(handler->GetRenderedImageSize(), QSize(-1, -1));
    std::vector<uint32_t>& pixels = frame(200, 100, kBlue);
    handler->OnPaint(browser.get(), PET_VIEW, {CefRect(1, 2, 3, 4)}, pixels.data(), 200, 100);
    ASSERT_EQ(published.size(), 1u);
    const QImage image = published[0].image;
    EXPECT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(published[0].dirty, QVector<QRect>{QRect(1, 2, 3, 4)});
    EXPECT_EQ(handler->GetRenderedImageSize(), QSize(200, 100));

    // The engine reuses its buffer: the image must not see that.
    EXPECT_NE(static_cast<const void*>(image.constBits()), static_cast<const void*>(pixels.data()));
    pixels.assign(pixels.size(), kGreen);
    EXPECT_EQ(image.pixel(0, 0), kBlue);
    // Publishing and storing share the one copy.
    EXPECT_EQ(handler->GetRenderImage().cacheKey(), image.cacheKey());

    // A popup frame leaves the rendered size alone.
    paint(PET_POPUP, 20, 10, kRed);
    EXPECT_EQ(handler->GetRenderedImageSize(), QSize(200, 100));
}

TEST_F(RenderHandlerTest, OpenPopupIsTheOnlyDirtyRectAndItsCloseIsRepaintedLater)
{
    paint(PET_VIEW, 200, 100, kBlue);
    handler->OnPopupSize(browser.get(), CefRect(10, 20, 50, 30));
    paint(PET_POPUP, 50, 30, kRed, {CefRect(0, 0, 50, 30)});
    paint(PET_VIEW, 200, 100, kBlue, {CefRect(0, 0, 5, 5)});
    ASSERT_EQ(published.size(), 3u);
    for (size_t i = 1; i < 3; ++i)
    {
        EXPECT_EQ(published[i].dirty, QVector<QRect>{QRect(10, 20, 50, 30)});
        EXPECT_EQ(published[i].image.pixel(10, 20), kRed);
        EXPECT_EQ(published[i].image.pixel(9, 20), kBlue);
    }

    handler->OnPopupShow(browser.get(), false);
    paint(PET_VIEW, 200, 100, kBlue, {CefRect(1, 1, 2, 2)});
    paint(PET_VIEW, 200, 100, kBlue, {CefRect(3, 3, 2, 2)});
    ASSERT_EQ(published.size(), 5u);
    EXPECT_EQ(published[3].dirty, (QVector<QRect>{QRect(1, 1, 2, 2), QRect(10, 20, 50, 30)}));
    // The stored view frame never held the popup.
    EXPECT_EQ(published[3].image.pixel(10, 20), kBlue);
    EXPECT_EQ(published[4].dirty, QVector<QRect>{QRect(3, 3, 2, 2)});
}

TEST_F(RenderHandlerTest, EmptyOrMissingViewStillYieldsOneByOne)
{
    // The size counts once Qt delivers it to the widget, which for a hidden one is at its show.
    view->resize(0, 0);
    view->show();
    CefRect rect = viewRect();
    EXPECT_EQ(rect.width, 1);
    EXPECT_EQ(rect.height, 1);

    handler->SetView(nullptr);
    rect = viewRect();
    EXPECT_EQ(rect.width, 1);
    EXPECT_EQ(rect.height, 1);
    CefScreenInfo info;
    EXPECT_FALSE(handler->GetScreenInfo(browser.get(), info));
    int x = 0;
    int y = 0;
    EXPECT_FALSE(handler->GetScreenPoint(browser.get(), 1, 1, x, y));
}

TEST_F(RenderHandlerTest, FrameAfterViewIsDestroyedIsDroppedAndOpensTheGate)
{
    viewRect();
    view.reset();
    paint(PET_VIEW, 200, 100, kBlue);
    EXPECT_TRUE(published.empty());

    // Still pending, a frame of another size would be refused.
    QWidget other;
    other.resize(50, 50);
    handler->SetView(&other);
    paint(PET_VIEW, 120, 80, kBlue);
    EXPECT_EQ(published.size(), 1u);
    handler->SetView(nullptr);
}

TEST_F(RenderHandlerTest, WatchHoldsFramesBackUntilTheMarkerShows)
{
    QSignalSpy found(handler.get(), &RenderHandler::targetPixelFound);
    paint(PET_VIEW, 20, 10, kBlue);
    handler->WatchForTargetPixel(5, 5, 255, QRect(2, 3, 4, 3), true);
    paint(PET_VIEW, 20, 10, kBlue);
    std::vector<uint32_t>& marked = frame(20, 10, kBlue);
    marked[5 * 20 + 5] = kRed;
    handler->OnPaint(browser.get(), PET_VIEW, {}, marked.data(), 20, 10);
    // Neither the frames before the marker nor, with dropFrame, the marked one reach the view.
    EXPECT_EQ(published.size(), 1u);
    ASSERT_EQ(found.size(), 1);
    const QImage part = found[0][0].value<QImage>();
    EXPECT_EQ(part.size(), QSize(4, 3));
    EXPECT_EQ(part.pixel(3, 2), kRed);

    // A marker already on the screen matches at once; so does one at the frame's width with red
    // 0, as the colour there is invalid. Without dropFrame the matching frame shows.
    paint(PET_VIEW, 20, 10, kRed);
    handler->WatchForTargetPixel(1, 1, 255, QRect(0, 0, 2, 2), true);
    handler->WatchForTargetPixel(30, 0, 0, QRect(0, 0, 1, 1), false);
    EXPECT_EQ(found.size(), 2);
    paint(PET_VIEW, 30, 10, kGreen);
    EXPECT_EQ(found.size(), 3);
    EXPECT_EQ(published.size(), 3u);
}

TEST(RenderHandlerScale, LogicalSizeAndPromiseFollowTheFactor)
{
    EXPECT_EXIT(
        {
            QCefGlobalSettings settings;
            settings.deviceScaleFactor = 1.5f;
            CCefManager::getInstance().initialize(settings);
            QWidget view;
            view.resize(301, 100);
            CefRefPtr<RenderHandler> handler = new RenderHandler(&view);
            int published = 0;
            QVector<QRect> dirty;
            QObject::connect(handler.get(), &RenderHandler::viewUpdated, [&](QImage, QVector<QRect> rects) {
                ++published;
                dirty = rects;
            });

            CefScreenInfo info;
            EXPECT_TRUE(handler->GetScreenInfo(nullptr, info));
            EXPECT_FLOAT_EQ(info.device_scale_factor, 1.5f);
            // 301 / 1.5 rounds to 201, and 201 * 1.5 rounds up to 302.
            EXPECT_EQ(info.rect.width, 201);
            EXPECT_EQ(info.rect.height, 67);
            EXPECT_EQ(info.available_rect.width, 201);

            std::vector<uint32_t> pixels(302 * 101, kBlue);
            handler->OnPaint(nullptr, PET_VIEW, {}, pixels.data(), 301, 100);
            EXPECT_EQ(published, 0);
            handler->OnPopupSize(nullptr, CefRect(10, 10, 21, 21));
            handler->OnPaint(nullptr, PET_VIEW, {}, pixels.data(), 302, 101);
            EXPECT_EQ(published, 1);
            EXPECT_EQ(dirty, QVector<QRect>{QRect(15, 15, 31, 31)});
            std::exit(::testing::Test::HasFailure() ? 1 : 0);
        },
        ::testing::ExitedWithCode(0), "");
}
} // namespace

TEST(FrameBufferPool, CopiesDeeplyAndReusesABufferOnlyOnceItsImagesAreGone)
{
    auto pool = std::make_shared<FrameBufferPool>();
    QImage source(64, 32, QImage::Format_ARGB32_Premultiplied);
    source.fill(0xff102030);

    QImage first = pool->copy(source);
    const uchar* firstBits = first.constBits();
    source.fill(0xff405060);
    EXPECT_EQ(first.pixel(5, 5), 0xff102030u);
    EXPECT_EQ(first.bytesPerLine(), source.bytesPerLine());

    // Still shown somewhere: the next copy gets another buffer.
    QImage second = pool->copy(source);
    EXPECT_NE(second.constBits(), firstBits);
    first = QImage();
    QImage third = pool->copy(source);
    EXPECT_EQ(third.constBits(), firstBits);
    EXPECT_EQ(third.pixel(5, 5), 0xff405060u);

    // A frame of another size starts afresh; images may outlive their pool.
    QImage wider = pool->copy(QImage(128, 32, QImage::Format_ARGB32_Premultiplied));
    EXPECT_EQ(wider.width(), 128);
    pool.reset();
    second = QImage();
    third = QImage();
    EXPECT_FALSE(wider.isNull());
}
