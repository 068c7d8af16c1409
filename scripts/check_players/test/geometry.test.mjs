import assert from 'node:assert/strict';
import { test } from 'node:test';
import { angleBetween, clipToFrame, measurePixels, measurePolygon, placedRectangle } from '../geometry.mjs';
import { chosenFrames, thinningAt } from '../expected.mjs';

const near = (got, wanted) => {
  assert.equal(got.length, wanted.length);
  got.flat().forEach((v, i) => assert.ok(Math.abs(v - wanted.flat()[i]) < 1e-9, `${got} is not ${wanted}`));
};

test('a quarter turn is clockwise on the screen, about the anchor and after the scale', () => {
  // 20 by 10 at double width is 40 by 10; turned, its right edge looks down.
  near(placedRectangle({ width: 20, height: 10, anchor: [0, 0], scale: [2, 1], position: [100, 100], rotation: 90 }),
    [[100, 100], [100, 140], [90, 140], [90, 100]]);
  near(placedRectangle({ width: 20, height: 10, anchor: [10, 5], scale: [1, 1], position: [0, 0], rotation: 0 }),
    [[-10, -5], [10, -5], [10, 5], [-10, 5]]);
});

test('angles a turn apart are the same', () => {
  assert.equal(angleBetween(725, 5), 0);
  assert.equal(angleBetween(-179, 179), 2);
});

test('clipping keeps the part inside, of polygons in either direction', () => {
  for (const square of [[[-5, -5], [5, -5], [5, 5], [-5, 5]], [[-5, 5], [5, 5], [5, -5], [-5, -5]]]) {
    const { area, centroid } = measurePolygon(clipToFrame(square, 100, 100));
    assert.equal(area, 25);
    near(centroid, [2.5, 2.5]);
  }
  assert.deepEqual(clipToFrame([[-9, -9], [-1, -9], [-1, -1], [-9, -1]], 100, 100), []);
  // A triangle over all of the frame leaves the frame.
  assert.equal(measurePolygon(clipToFrame([[-100, -100], [300, -100], [-100, 300]], 50, 40)).area, 2000);
});

test('pixels weigh as much as they are opaque, at their middles', () => {
  const pixels = new Uint8Array(3 * 2 * 4);
  pixels[3] = 255; // (0, 0) whole
  pixels[(3 + 1) * 4 + 3] = 51; // (1, 1) a fifth
  const { area, centroid } = measurePixels(pixels, 3, 2);
  assert.ok(Math.abs(area - 1.2) < 1e-12);
  near(centroid, [(0.5 + 0.3) / 1.2, (0.5 + 0.3) / 1.2]);
  assert.equal(measurePixels(new Uint8Array(24), 3, 2).centroid, null);
});

test('chosen frames hold both ends and the middle', () => {
  assert.deepEqual(chosenFrames(10, 20, 3), [10, 15, 20]);
  assert.deepEqual(chosenFrames(0, 2, Infinity), [0, 1, 2]);
  assert.deepEqual(chosenFrames(4, 4, 3), [4]);
});

test('thinning excuses only keys that may be left out', () => {
  const layer = { positions: [[0, 0], [0.01, 0], [0.03, 0], [0.03, 0], [9, 0]], rotations: [0, 0, 0, 0, 0] };
  const keyed = (...frames) => ({ p: { a: 1, k: frames.map((t) => ({ t, s: [0, 0, 0] })) }, r: { a: 0, k: 0 } });
  // Samples 1 and 2 creep: read from keys 0 and 3, sample 1 is shown at 0.01, sample 2 at 0.02.
  assert.ok(Math.abs(thinningAt(layer, keyed(100, 103, 104), 2, 100).px - 0.01) < 1e-12);
  // Sample 3 has a jump after it, so its key must be there: nothing is excused.
  assert.equal(thinningAt(layer, keyed(100, 104), 2, 100).px, 0);
});
