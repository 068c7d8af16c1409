// Skottie, Skia's player, as WebAssembly: what it draws, as pixels.
import { createRequire } from 'node:module';

const kit = await createRequire(import.meta.url)('canvaskit-wasm/full')();

/// A transparent picture to draw documents of width by height pixels on. It is one pixel wider and
/// higher, so that a document can be drawn shifted by a fraction of a pixel.
export class SkottieCanvas {
  constructor(width, height) {
    this.width = width + 1;
    this.height = height + 1;
    this.inner = [width, height];
    this.surface = kit.MakeSurface(this.width, this.height);
    if (!this.surface) throw new Error(`no picture of ${width} by ${height} pixels`);
  }

  /// Calls `use(pixelsAt)`, where pixelsAt(frame, [dx, dy]) gives the pixels of a frame (of the file's
  /// count) drawn dx, dy (0 to 1) pixels to the right and down: 4 bytes each, alpha last.
  play(document, use) {
    const animation = kit.MakeManagedAnimation(JSON.stringify(document), {});
    if (!animation) throw new Error('the document was not accepted by Skottie');
    const canvas = this.surface.getCanvas();
    const [width, height] = this.inner;
    try {
      use((frame, [dx, dy]) => {
        canvas.clear(kit.TRANSPARENT);
        animation.seekFrame(frame - (document.ip ?? 0));
        animation.render(canvas, kit.LTRBRect(dx, dy, dx + width, dy + height));
        this.surface.flush();
        return canvas.readPixels(0, 0, {
          width: this.width, height: this.height,
          colorType: kit.ColorType.RGBA_8888, alphaType: kit.AlphaType.Premul, colorSpace: kit.ColorSpace.SRGB,
        });
      });
    } finally {
      animation.delete();
    }
  }

  close() {
    this.surface.delete();
  }
}
