// The comparison of one baked document with the samples it was baked from.
import { angleBetween, clipToFrame, measurePixels, measurePolygon, placedRectangle } from './geometry.mjs';
import { isAnimated, stateAt, thinningAt } from './expected.mjs';
import { layerMatrices } from './lottie_web.mjs';
import { SkottieCanvas } from './skottie.mjs';
import { openedDocument, solidOnly } from './variants.mjs';

export const limits = {
  px: 0.05, degrees: 0.01, scale: 1e-4, // of matrices; numbers are written to a thousandth, and players keep 32-bit floats
  centroid: 0.3, smallCentroid: 0.5, smallArea: 64, // of pictures, pixels
  areaShare: 0.02, areaEdge: 0.05, // of the area, and pixels along each edge
  // Skia lays a long edge flat when its ends are a fraction of a pixel apart. That leans a strip's
  // centroid by up to this share of its length over its thickness; in pixels.
  lean: 0.0025,
  leastThickness: 4, // of a strip whose centroid is compared, pixels
  leastArea: 4, // below this a picture says nothing
};

/// The largest of what it is shown, and where that was.
class Worst {
  value = 0;
  note(value) {
    // A NaN must not pass as small.
    if (!(value <= this.value)) this.value = value;
  }
}

/// What came out for one file. `failures` has one line for each layer and quantity beyond its limit,
/// the worst frame of it.
class Report {
  layers = 0;
  frames = 0;
  matrices = { px: new Worst(), degrees: new Worst(), scale: new Worst() };
  thinning = { px: new Worst(), degrees: new Worst() };
  pictures = { centroid: new Worst(), area: new Worst(), compared: 0, offScreen: 0 };
  failures = new Map();

  fail(layer, quantity, frame, value, limit) {
    const key = `${layer.index}/${quantity}`;
    const before = this.failures.get(key);
    if (before && !(value > before.value)) return;
    const shown = Number.isFinite(value) ? value.toFixed(4) : 'nothing shown';
    this.failures.set(key, {
      value, text: `layer ${layer.index + 1} "${layer.name}", frame ${frame}: ${quantity} ${shown}, limit ${limit.toFixed(4)}`,
    });
  }

  get good() {
    return this.failures.size === 0;
  }
}

const degreesOf = (x, y) => (Math.atan2(y, x) * 180) / Math.PI;

/// Differences between a player's matrix and the state that the samples tell.
function matrixDifference([a, b, c, d, x, y], state) {
  const [u, v] = state.anchor;
  const [sx, sy] = state.scale;
  const wide = Math.hypot(a, b);
  const tall = Math.hypot(c, d);
  // An axis of no length has no direction. A mirrored one points the other way.
  const turnX = wide < 1e-6 ? 0 : angleBetween(degreesOf(a, b) + (sx < 0 ? 180 : 0), state.rotation);
  const turnY = tall < 1e-6 ? 0 : angleBetween(degreesOf(d, -c) + (sy < 0 ? 180 : 0), state.rotation);
  // The simulation takes no scale below a thousandth.
  const scaleOff = (shown, sampled) => Math.abs(Math.max(shown, 0.001) - Math.max(Math.abs(sampled), 0.001));
  return {
    px: Math.hypot(a * u + c * v + x - state.position[0], b * u + d * v + y - state.position[1]),
    degrees: Math.max(turnX, turnY),
    scale: Math.max(scaleOff(wide, sx), scaleOff(tall, sy)),
    shownScale: [wide * Math.sign(sx), tall * Math.sign(sy)],
  };
}

function compareMatrix(report, layer, matrix, state, lost, scaleMoves, frame) {
  const difference = matrix ? matrixDifference(matrix, state) : { px: NaN, degrees: NaN, scale: NaN };
  // One scale was sampled, so a scale with keys of its own can't be compared frame by frame.
  const quantities = scaleMoves ? ['px', 'degrees'] : ['px', 'degrees', 'scale'];
  for (const quantity of quantities) {
    const limit = limits[quantity] + (lost[quantity] ?? 0);
    report.matrices[quantity].note(difference[quantity]);
    report.thinning[quantity]?.note(lost[quantity]);
    if (!(difference[quantity] <= limit)) report.fail(layer, `lottie-web ${quantity}`, frame, difference[quantity], limit);
  }
  return difference;
}

/// Area and centroid of what a frame shows, the mean over `shifts` of the picture.
function measureFrame(canvas, pixelsAt, frame, shifts) {
  const measured = shifts.map((shift) => {
    const { area, centroid } = measurePixels(pixelsAt(frame, shift), canvas.width, canvas.height);
    return { area, centroid: centroid?.map((v, c) => v - shift[c]) };
  });
  const mean = (values) => values.reduce((sum, v) => sum + v, 0) / values.length;
  return {
    area: mean(measured.map((m) => m.area)),
    centroid: measured.every((m) => m.centroid) ? [0, 1].map((c) => mean(measured.map((m) => m.centroid[c]))) : null,
  };
}

const unshifted = [[0, 0]];
// Skia moves the corners of what it smooths to fractions of a pixel, which leans long thin pieces by
// up to a quarter of one. Averaged over these shifts that goes away, and a wrong place does not.
const manyShifts = Array.from({ length: 16 }, (_, i) => [((i * 7) % 16) / 16, i / 16]);

function pictureDifference(drawn, visible) {
  return {
    apart: drawn.centroid
      ? Math.hypot(drawn.centroid[0] - visible.centroid[0], drawn.centroid[1] - visible.centroid[1]) : Infinity,
    areaOff: Math.abs(drawn.area - visible.area),
  };
}

function comparePicture(report, layer, polygon, canvas, pixelsAt, lostPx, frame) {
  const visible = measurePolygon(clipToFrame(polygon, ...canvas.inner));
  let drawn = measureFrame(canvas, pixelsAt, frame, unshifted);
  if (visible.area < limits.leastArea) {
    report.pictures.offScreen += 1;
    // What should be out of sight must not show either.
    const areaLimit = limits.leastArea + (limits.areaEdge + lostPx) * visible.perimeter;
    if (drawn.area > areaLimit) report.fail(layer, 'Skottie area where there should be none', frame, drawn.area, areaLimit);
    return;
  }
  report.pictures.compared += 1;
  const thickness = (2 * visible.area) / visible.perimeter;
  const centroidLimit = (visible.area < limits.smallArea ? limits.smallCentroid : limits.centroid) + lostPx
    + (limits.lean * visible.perimeter) / 2 / thickness;
  const isSliver = visible.area >= limits.smallArea && thickness < limits.leastThickness;
  const areaLimit = limits.areaShare * visible.area + (limits.areaEdge + lostPx) * visible.perimeter;
  let { apart, areaOff } = pictureDifference(drawn, visible);
  if (!(apart <= centroidLimit / 3 && areaOff <= areaLimit / 3)) {
    drawn = measureFrame(canvas, pixelsAt, frame, manyShifts);
    ({ apart, areaOff } = pictureDifference(drawn, visible));
  }
  report.pictures.area.note(areaOff / visible.area);
  if (!isSliver) report.pictures.centroid.note(apart);
  if (!isSliver && !(apart <= centroidLimit)) report.fail(layer, 'Skottie centroid px', frame, apart, centroidLimit);
  if (!(areaOff <= areaLimit)) report.fail(layer, 'Skottie area', frame, areaOff, areaLimit);
}

/// The rectangle that stands for a layer in pictures: its source, or any if it has no size of its own,
/// as the transform is all that is compared.
const sizeOf = (layer) => (layer.width >= 1 && layer.height >= 1
  ? { width: Math.round(layer.width), height: Math.round(layer.height) } : { width: 100, height: 100 });

/// Compares every sampled layer but the dead ones at `frames` (of the file's count). Gives the report,
/// and the rectangles expected at each frame.
export async function compareBaked(browser, document, samples, frames) {
  const report = new Report();
  const layers = samples.layers.filter((layer) => layer.type !== 'Dead');
  report.layers = layers.length;
  report.frames = frames.length;
  const misplaced = layers.find((l) => !document.layers[l.index]
    || (document.layers[l.index].ind !== undefined && document.layers[l.index].ind !== l.id));
  if (misplaced) throw new Error(`layer ${misplaced.index + 1} of the result is not the sampled "${misplaced.name}"`);

  const matrices = await layerMatrices(browser, openedDocument(document), layers.map((l) => l.index), frames);
  const outlines = frames.map(() => []);
  const canvas = new SkottieCanvas(Math.round(document.w), Math.round(document.h));
  try {
    layers.forEach((layer, k) => {
      const transform = document.layers[layer.index].ks;
      const scaleMoves = isAnimated(transform?.s);
      const solid = sizeOf(layer);
      const placed = frames.map((frame, f) => {
        const i = frame - samples.start;
        const state = stateAt(layer, transform, i, samples.pixelAspect ?? 1);
        const lost = thinningAt(layer, transform, i, samples.start);
        const difference = compareMatrix(report, layer, matrices[f][k], state, lost, scaleMoves, frame);
        const scale = scaleMoves && difference.shownScale ? difference.shownScale : state.scale;
        const polygon = placedRectangle({ ...solid, ...state, scale });
        outlines[f].push(polygon);
        // A turn lost by thinning moves the far corners.
        const reach = Math.max(...polygon.map((p) => Math.hypot(p[0] - state.position[0], p[1] - state.position[1])));
        return { polygon, lostPx: lost.px + (reach * lost.degrees * Math.PI) / 180 };
      });
      canvas.play(solidOnly(document, layer.index, solid.width, solid.height), (pixelsAt) => {
        placed.forEach(({ polygon, lostPx }, f) => comparePicture(report, layer, polygon, canvas, pixelsAt, lostPx, frames[f]));
      });
    });
  } finally {
    canvas.close();
  }
  return { report, outlines };
}
