// What runs in the browser: drawing one layer by lottie-web and one body by a canvas, and comparing the two.
import { createRequire } from 'node:module';
import { chromium } from 'playwright-core';

const library = createRequire(import.meta.url).resolve('lottie-web/build/player/lottie.js');

/// A page with the player that reaches no network. `executable` is Chromium's path.
export async function startPage(executable) {
  const args = ['--disable-gpu', '--disable-background-networking', '--disable-component-update', '--no-first-run'];
  // Chromium has no sandbox for root.
  if (process.getuid?.() === 0) args.push('--no-sandbox');
  const browser = await chromium.launch({ executablePath: executable, args });
  const page = await (await browser.newContext({ offline: true, deviceScaleFactor: 1 })).newPage();
  await page.setContent('<!doctype html><style>*{margin:0}</style><body></body>');
  await page.addScriptTag({ path: library });
  await page.evaluate(install);
  return { page, close: () => browser.close() };
}

function install() {
  const longerSide = 1600; // pixels of the pictures that are compared; fewer blur the strokes of small text

  const extent = (pieces) => {
    const box = [Infinity, Infinity, -Infinity, -Infinity];
    const add = (x, y) => {
      box[0] = Math.min(box[0], x); box[1] = Math.min(box[1], y);
      box[2] = Math.max(box[2], x); box[3] = Math.max(box[3], y);
    };
    for (const piece of pieces) {
      if (piece.radius !== undefined) {
        add(piece.centre[0] - piece.radius, piece.centre[1] - piece.radius);
        add(piece.centre[0] + piece.radius, piece.centre[1] + piece.radius);
      } else {
        piece.points.forEach(([x, y]) => add(x, y));
      }
    }
    return box;
  };

  const load = (document) => new Promise((resolve, reject) => {
    const container = window.document.createElement('div');
    window.document.body.replaceChildren(container);
    const animation = window.lottie.loadAnimation({
      container, animationData: document, renderer: 'svg', autoplay: false, loop: false,
      rendererSettings: { progressiveLoad: false },
    });
    animation.addEventListener('error', (e) => reject(e.nativeError ?? new Error(e.type)));
    animation.addEventListener('DOMLoaded', () => resolve({ animation, container }));
    setTimeout(() => reject(new Error('not shown by lottie-web')), 20000);
  });

  // Of what the player draws; its own clipping to the composition is taken away.
  const drawnBox = (svg) => {
    for (const group of svg.querySelectorAll(':scope > g[clip-path]')) group.removeAttribute('clip-path');
    const frame = svg.getScreenCTM().inverse();
    const box = [Infinity, Infinity, -Infinity, -Infinity];
    for (const path of svg.querySelectorAll('path, rect, image, text')) {
      if (path.closest('defs, clipPath, mask')) continue;
      const r = path.getBoundingClientRect();
      if (r.width === 0 && r.height === 0) continue;
      for (const [x, y] of [[r.left, r.top], [r.right, r.bottom]]) {
        const p = new DOMPoint(x, y).matrixTransform(frame);
        box[0] = Math.min(box[0], p.x); box[1] = Math.min(box[1], p.y);
        box[2] = Math.max(box[2], p.x); box[3] = Math.max(box[3], p.y);
      }
    }
    return box;
  };

  const canvasOf = (width, height) => {
    const canvas = window.document.createElement('canvas');
    canvas.width = width;
    canvas.height = height;
    return canvas.getContext('2d', { willReadFrequently: true });
  };

  const pictureOf = async (svg, view, width, height) => {
    svg.setAttribute('viewBox', `${view[0]} ${view[1]} ${view[2] - view[0]} ${view[3] - view[1]}`);
    svg.setAttribute('width', width);
    svg.setAttribute('height', height);
    // Whole pixels have not quite the view's proportions: it fills them, as the body's picture does.
    svg.setAttribute('preserveAspectRatio', 'none');
    svg.removeAttribute('style');
    // Texts are repeated there with their control characters, which a picture cannot have.
    svg.querySelectorAll('[aria-label]').forEach((element) => element.removeAttribute('aria-label'));
    const image = new Image();
    image.src = `data:image/svg+xml;charset=utf-8,${encodeURIComponent(new XMLSerializer().serializeToString(svg))}`;
    await image.decode();
    const context = canvasOf(width, height);
    context.drawImage(image, 0, 0, width, height);
    return context;
  };

  // One path of all pieces, each turning the same way, so that neighbours join without a seam.
  const drawBody = (pieces, view, width, height) => {
    const context = canvasOf(width, height);
    context.scale(width / (view[2] - view[0]), height / (view[3] - view[1]));
    context.translate(-view[0], -view[1]);
    context.beginPath();
    for (const piece of pieces) {
      if (piece.radius !== undefined) {
        context.moveTo(piece.centre[0] + piece.radius, piece.centre[1]);
        context.arc(piece.centre[0], piece.centre[1], piece.radius, 0, 2 * Math.PI);
      } else if (piece.closed) {
        const area = piece.points.reduce((sum, [x, y], i) => {
          const [u, v] = piece.points[(i + 1) % piece.points.length];
          return sum + x * v - u * y;
        }, 0);
        const points = area < 0 ? [...piece.points].reverse() : piece.points;
        points.forEach(([x, y], i) => (i === 0 ? context.moveTo(x, y) : context.lineTo(x, y)));
        context.closePath();
      }
    }
    context.fill('nonzero');
    return context;
  };

  const alphas = (context) => {
    const { data } = context.getImageData(0, 0, context.canvas.width, context.canvas.height);
    const result = new Uint8Array(data.length / 4);
    for (let i = 0; i < result.length; i += 1) result[i] = data[4 * i + 3];
    return result;
  };

  // Red: the player alone; blue: the body alone; white: both; black: neither.
  const overlay = (shown, body, width, height) => {
    const context = canvasOf(width, height);
    const image = context.createImageData(width, height);
    for (let i = 0; i < shown.length; i += 1) {
      image.data[4 * i] = shown[i];
      image.data[4 * i + 1] = Math.min(shown[i], body[i]);
      image.data[4 * i + 2] = body[i];
      image.data[4 * i + 3] = 255;
    }
    context.putImageData(image, 0, 0);
    return context.canvas.toDataURL('image/png').split(',')[1];
  };

  /// Intersection over union of the areas that are at least half covered, and a picture of both.
  window.compare = async (document, pieces) => {
    const { animation, container } = await load(document);
    try {
      animation.goToAndStop(0, true);
      const svg = container.querySelector('svg');
      const boxes = [drawnBox(svg), extent(pieces)];
      const view = [0, 1, 2, 3].map((side) => (side < 2 ? Math.min : Math.max)(boxes[0][side], boxes[1][side]));
      const longer = Math.max(view[2] - view[0], view[3] - view[1]);
      if (!Number.isFinite(longer) || longer <= 0) return { overlap: 1, empty: true };
      const margin = longer / 20;
      const wide = [view[0] - margin, view[1] - margin, view[2] + margin, view[3] + margin];
      const scale = longerSide / (longer + 2 * margin);
      const width = Math.max(1, Math.round((wide[2] - wide[0]) * scale));
      const height = Math.max(1, Math.round((wide[3] - wide[1]) * scale));
      const shown = alphas(await pictureOf(svg, wide, width, height));
      const body = alphas(drawBody(pieces, wide, width, height));
      let both = 0;
      let either = 0;
      for (let i = 0; i < shown.length; i += 1) {
        const a = shown[i] >= 128;
        const b = body[i] >= 128;
        both += a && b ? 1 : 0;
        either += a || b ? 1 : 0;
      }
      return { overlap: either > 0 ? both / either : 1, empty: either === 0, picture: overlay(shown, body, width, height) };
    } finally {
      animation.destroy();
    }
  };
}
