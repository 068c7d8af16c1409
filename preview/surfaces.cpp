#include "preview/surfaces.h"

#include "preview/gl_painter.h"
#include "preview/image_painter.h"
#include "preview/preview_widget.h"

#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLWidget>
#include <QPainter>

#include <memory>

namespace jostle {

namespace {

class CardSurface final : public QOpenGLWidget {
public:
    CardSurface(PreviewWidget& preview, const QSurfaceFormat& format) : QOpenGLWidget(&preview), preview_(preview) {
        setFormat(format);
    }
    ~CardSurface() override { releasePainter(); }

protected:
    void initializeGL() override {
        // The context ends, and another begins, when the widget is moved into another window.
        connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &CardSurface::releasePainter);
        isReady_ = painter_.initialize();
    }
    void paintGL() override {
        if (isReady_) {
            painter_.paint(preview_.drawing(), preview_.view(), size() * devicePixelRatio(), GlPainter::Rows::BottomUp);
        }
    }

private:
    void releasePainter() {
        if (isReady_) {
            makeCurrent();
            painter_.release();
            doneCurrent();
            isReady_ = false;
        }
    }

    PreviewWidget& preview_;
    GlPainter painter_;
    bool isReady_ = false;
};

/// A widget that copies an image of its own into the window.
class CopiedSurface : public QWidget {
public:
    explicit CopiedSurface(PreviewWidget& preview) : QWidget(&preview), preview_(preview) {
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

protected:
    virtual void paintInto(QImage& image) = 0;
    [[nodiscard]] PreviewWidget& preview() { return preview_; }

    void paintEvent(QPaintEvent*) final {
        const QSize pixels = size() * devicePixelRatio();
        if (image_.size() != pixels) {
            image_ = QImage(pixels, QImage::Format_RGB32);
        }
        paintInto(image_);
        QPainter(this).drawImage(rect(), image_);
    }

private:
    PreviewWidget& preview_;
    QImage image_;
};

class ProcessorSurface final : public CopiedSurface {
public:
    ProcessorSurface(PreviewWidget& source, const QSurfaceFormat& format) : CopiedSurface(source) {
        context_.setFormat(format);
        context_.create();
        target_.setFormat(context_.format());
        target_.create();
        isReady_ = context_.makeCurrent(&target_) && painter_.initialize();
    }
    ~ProcessorSurface() override {
        if (context_.makeCurrent(&target_)) {
            buffer_.reset();
            painter_.release();
            context_.doneCurrent();
        }
    }

protected:
    void paintInto(QImage& image) override {
        if (!isReady_ || !context_.makeCurrent(&target_)) {
            return;
        }
        if (!buffer_ || buffer_->size() != image.size()) {
            buffer_ = std::make_unique<QOpenGLFramebufferObject>(image.size());
        }
        buffer_->bind();
        painter_.paint(preview().drawing(), preview().view(), image.size(), GlPainter::Rows::TopDown);
        context_.functions()->glReadPixels(0, 0, image.width(), image.height(), GL_BGRA, GL_UNSIGNED_BYTE,
                                           image.bits());
        context_.doneCurrent();
    }

private:
    QOpenGLContext context_;
    QOffscreenSurface target_;
    std::unique_ptr<QOpenGLFramebufferObject> buffer_;
    GlPainter painter_;
    bool isReady_ = false;
};

class ImageSurface final : public CopiedSurface {
public:
    using CopiedSurface::CopiedSurface;

protected:
    void paintInto(QImage& image) override { paintImage(preview().drawing(), preview().view(), image); }
};

} // namespace

QWidget* makeGlSurface(PreviewWidget& preview) {
    const std::optional<GlPainter::Support> support = GlPainter::support();
    if (!support) {
        return nullptr;
    }
    if (support->isSoftware) {
        return new ProcessorSurface(preview, support->format);
    }
    return new CardSurface(preview, support->format);
}

QWidget* makeImageSurface(PreviewWidget& preview) {
    return new ImageSurface(preview);
}

} // namespace jostle
