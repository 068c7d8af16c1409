// What the simulation's samples say of a layer, and what the writing of keyframes may lose of them.

// A key is left out where the samples on both sides of it differ by no more than this.
const pointStep = Math.sqrt(0.001);
const angleStep = 0.001;
// The samples are printed numbers; a difference may fall on the other side of the threshold.
const slack = 1.001;

const isKeyed = (property) => Array.isArray(property?.k) && typeof property.k[0] === 'object';

/// The frames with a key of a property, null if it has a static value.
export function keyFrames(property) {
  return isKeyed(property) ? property.k.map((key) => key.t) : null;
}

export const isAnimated = isKeyed;

const distance = (a, b) => Math.hypot(...a.map((v, i) => v - b[i]));

/// How far a value at sample `i`, read from the keys written, is from the sample because keys were
/// left out: 0 at a key, and 0 as well if a key is missing that had to be there, so that a comparison
/// then shows the whole difference. `keys` are sample indices in order.
function thinningLoss(samples, keys, i, step) {
  if (keys.includes(i)) return 0;
  const before = keys.filter((k) => k < i).at(-1);
  if (before === undefined) return 0;
  const after = keys.find((k) => k > i);
  const last = samples.length - 1;
  for (let j = before + 1; j < (after ?? samples.length); j += 1) {
    const moved = distance(samples[Math.min(j + 1, last)], samples[j - 1]);
    if (moved > step * slack) return 0;
  }
  const share = after === undefined ? 0 : (i - before) / (after - before);
  const shown = samples[before].map((v, c) => v + share * ((samples[after ?? before] ?? samples[before])[c] - v));
  return distance(shown, samples[i]);
}

function sampleKeys(property, start) {
  const frames = keyFrames(property);
  return frames ? frames.map((t) => t - start) : [0];
}

/// Loss by thinning of position (pixels) and rotation (degrees) of one sampled layer at sample `i`.
/// A separated position is keyed with a threshold too small to matter here, and counts as exact.
export function thinningAt(layer, transform, i, start) {
  const turn = transform?.r ?? transform?.rz;
  return {
    px: transform?.p?.s ? 0 : thinningLoss(layer.positions, sampleKeys(transform?.p, start), i, pointStep),
    degrees: thinningLoss(layer.rotations.map((r) => [r]), sampleKeys(turn, start), i, angleStep),
  };
}

/// The state of a sampled layer at sample `i` in the terms of the file: samples hold square pixels and
/// scales without sign, the file's x is divided by the pixel aspect and its scale may mirror.
export function stateAt(layer, transform, i, pixelAspect) {
  const written = transform?.s;
  const first = isKeyed(written) ? written.k[0].s : written?.k;
  const sign = (c) => (Array.isArray(first) && first[c] < 0 ? -1 : 1);
  return {
    position: [layer.positions[i][0] / pixelAspect, layer.positions[i][1]],
    rotation: layer.rotations[i],
    anchor: layer.anchor,
    scale: [sign(0) * Math.abs(layer.scale[0]), sign(1) * Math.abs(layer.scale[1])],
  };
}

/// `count` frames from start to end, both included, evenly spread; every frame if `count` is Infinity.
export function chosenFrames(start, end, count) {
  const total = end - start + 1;
  if (count >= total) return Array.from({ length: total }, (_, i) => start + i);
  return Array.from({ length: count }, (_, i) => start + Math.round((i * (total - 1)) / (count - 1)));
}
