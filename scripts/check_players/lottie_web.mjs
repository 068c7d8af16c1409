// lottie-web in headless Chromium: matrices of layers, and pictures of frames.
import { createRequire } from 'node:module';
import { chromium } from 'playwright-core';

const library = createRequire(import.meta.url).resolve('lottie-web/build/player/lottie.js');

/// A browser that reaches no network. `executable` is Chromium's path.
export function startBrowser(executable) {
  const args = ['--disable-gpu', '--disable-background-networking', '--disable-component-update', '--no-first-run'];
  // Chromium has no sandbox for root.
  if (process.getuid?.() === 0) args.push('--no-sandbox');
  return chromium.launch({ executablePath: executable, args });
}

async function withPage(browser, work) {
  const context = await browser.newContext({ offline: true, deviceScaleFactor: 1 });
  try {
    const page = await context.newPage();
    page.setDefaultTimeout(120000);
    await page.setContent('<!doctype html><style>*{margin:0}svg{display:block}</style><body></body>');
    await page.addScriptTag({ path: library });
    await page.evaluate(() => {
      window.loadInto = (container, document) => new Promise((resolve, reject) => {
        const animation = window.lottie.loadAnimation({
          container, animationData: document, renderer: 'svg', autoplay: false, loop: false,
          rendererSettings: { progressiveLoad: false },
        });
        animation.addEventListener('error', (e) => reject(e.nativeError ?? new Error(e.type)));
        animation.addEventListener('data_failed', () => reject(new Error('the document was not accepted')));
        animation.addEventListener('DOMLoaded', () => resolve(animation));
        // A file it refuses (a camera) may only never finish; everything it loads is already there.
        setTimeout(() => reject(new Error('not shown by lottie-web')), 20000);
      });
    });
    return await work(page);
  } finally {
    await context.close();
  }
}

/// The layer-to-composition matrices [a, b, c, d, x, y] of the layers `indices` at each of `frames`
/// (of the file's own count): (u, v) lands at (a u + c v + x, b u + d v + y). Outer order: frames.
export function layerMatrices(browser, document, indices, frames) {
  return withPage(browser, (page) => page.evaluate(async ({ document, indices, frames }) => {
    const container = window.document.createElement('div');
    window.document.body.append(container);
    const first = Math.round(document.ip ?? 0);
    const animation = await window.loadInto(container, document);
    const flat = (transform) => {
      const p = transform.v.props;
      return [p[0], p[1], p[4], p[5], p[12], p[13]];
    };
    // Inner transform first, then the one around it.
    const within = (m, n) => [
      n[0] * m[0] + n[2] * m[1], n[1] * m[0] + n[3] * m[1],
      n[0] * m[2] + n[2] * m[3], n[1] * m[2] + n[3] * m[3],
      n[0] * m[4] + n[2] * m[5] + n[4], n[1] * m[4] + n[3] * m[5] + n[5],
    ];
    return frames.map((frame) => {
      animation.goToAndStop(frame - first, true);
      return indices.map((index) => {
        const element = animation.renderer.elements[index];
        if (!element?.finalTransform) return null;
        return (element.hierarchy ?? []).reduce(
          (m, parent) => within(m, flat(parent.finalTransform.mProp)), flat(element.finalTransform.mProp));
      });
    });
  }, { document, indices, frames }));
}

/// Writes one picture with the frames side by side. `outlines` has for each frame a list of polygons
/// in composition pixels to draw thinly over it.
export function drawOverview(browser, document, frames, outlines, file) {
  return withPage(browser, async (page) => {
    const width = Math.min(480, Math.max(160, document.w));
    const height = Math.max(1, Math.round((width * document.h) / document.w));
    await page.setViewportSize({ width: (width + 8) * frames.length, height: height + 24 });
    await page.evaluate(async ({ document, frames, outlines, width, height }) => {
      const first = Math.round(document.ip ?? 0);
      const { body } = window.document;
      body.style.cssText = 'display:flex;background:#ddd;font:12px sans-serif';
      for (const [i, frame] of frames.entries()) {
        const cell = window.document.createElement('div');
        cell.style.cssText = 'margin:4px';
        const box = window.document.createElement('div');
        box.style.cssText = `position:relative;overflow:hidden;background:#fff;width:${width}px;height:${height}px`;
        cell.append(box, `frame ${frame}`);
        body.append(cell);
        const animation = await window.loadInto(box, structuredClone(document));
        animation.goToAndStop(frame - first, true);
        const lines = outlines[i].map((polygon) => `<polygon points="${polygon.map((p) => p.join()).join(' ')}"/>`);
        box.insertAdjacentHTML('beforeend', `<svg viewBox="0 0 ${document.w} ${document.h}" fill="none" stroke="#e0007a"
          style="position:absolute;inset:0" stroke-width="${document.w / width}">${lines.join('')}</svg>`);
      }
      await Promise.all([...window.document.images].map((image) => image.decode().catch(() => {})));
      await new Promise((resolve) => { requestAnimationFrame(() => requestAnimationFrame(resolve)); });
    }, { document, frames, outlines, width, height });
    await page.screenshot({ path: file });
  });
}
