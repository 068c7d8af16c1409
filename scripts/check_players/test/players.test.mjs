// The whole check on a document made by hand, right and with one thing wrong at a time.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { compareBaked } from '../compare.mjs';
import { startBrowser } from '../lottie_web.mjs';

let browser;
before(async () => { browser = await startBrowser(process.env.CHROMIUM ?? '/usr/bin/chromium'); });
after(() => browser.close());

const still = (k) => ({ a: 0, k });
const keyed = (samples) => ({
  a: 1,
  k: samples.map((s, t) => (t + 1 < samples.length
    ? { t: t + 30, s, o: { x: 0.167, y: 0.167 }, i: { x: 0.833, y: 0.833 } } : { t: t + 30, s })),
});

/// Frames 30 to 40 of a 300 by 200 composition: a plank that falls and turns, shown from frame 35 on; a
/// mirrored picture that is not there; a resting block with a child that must not disturb it.
function scene() {
  const positions = Array.from({ length: 11 }, (_, i) => [150 + 3 * i, 20 + i * i, 0]);
  const rotations = positions.map((_, i) => 37 * i);
  const layer = (ty, ind, more, ks) => ({ ty, ind, ip: 30, op: 41, st: 0, sr: 1, ...more, ks: { o: still(0), ...ks } });
  const document = {
    v: '5.7.4', fr: 30, ip: 30, op: 41, w: 300, h: 200,
    assets: [{ id: 'picture', w: 60, h: 40, u: 'images/', p: 'none.png', e: 0 }],
    layers: [
      layer(1, 7, { ip: 35, sw: 80, sh: 20, sc: '#ff0000' },
        { a: still([10, 5, 0]), p: keyed(positions), r: keyed(rotations.map((r) => [r])), s: still([150, 50, 100]) }),
      layer(2, 3, { refId: 'picture' }, { a: still([30, 20, 0]), p: still([60, 120, 0]), r: still(30), s: still([-100, 100, 100]) }),
      layer(4, 2, { shapes: [], parent: 1 }, { a: still([0, 0, 0]), p: still([5, 5, 0]), r: still(0), s: still([100, 100, 100]) }),
      layer(1, 1, { sw: 50, sh: 50, sc: '#00ff00', hd: true }, { a: still([25, 25, 0]), p: still([250, 180, 0]), r: still(0), s: still([100, 100, 100]) }),
    ],
  };
  const resting = (position, rotation) => ({ positions: positions.map(() => position), rotations: rotations.map(() => rotation) });
  const samples = {
    start: 30, end: 40, pixelAspect: 1,
    layers: [
      { index: 0, id: 7, name: 'plank', type: 'Dynamic', width: 80, height: 20, anchor: [10, 5], scale: [1.5, 0.5],
        positions: positions.map(([x, y]) => [x, y]), rotations },
      { index: 1, id: 3, name: 'picture', type: 'Static', width: 60, height: 40, anchor: [30, 20], scale: [1, 1], ...resting([60, 120], 30) },
      { index: 2, id: 2, name: 'child', type: 'Dead', width: 0, height: 0, anchor: [0, 0], scale: [1, 1], ...resting([0, 0], 0) },
      { index: 3, id: 1, name: 'block', type: 'Static', width: 50, height: 50, anchor: [25, 25], scale: [1, 1], ...resting([250, 180], 0) },
    ],
  };
  return { document, samples };
}

const compare = ({ document, samples }) => compareBaked(browser, document, samples, [30, 35, 38, 40]);

test('a faithful bake passes, whatever hides its layers', async () => {
  const { report } = await compare(scene());
  assert.deepEqual([...report.failures.values()].map((f) => f.text), []);
  assert.equal(report.layers, 3);
  assert.equal(report.pictures.compared, 12);
});

const faults = {
  'a position a tenth of a pixel off': ({ document }) => { document.layers[3].ks.p.k = [250.1, 180, 0]; },
  'a turn the wrong way': ({ document }) => { document.layers[1].ks.r.k = -30; },
  'a turn 0.02 degrees off': ({ document }) => { document.layers[1].ks.r.k = 30.02; },
  'an anchor that was not written': ({ document }) => { document.layers[0].ks.a.k = [40, 10, 0]; },
  'a scale that was not written': ({ document }) => { document.layers[0].ks.s.k = [100, 50, 100]; },
  'keys one frame late': ({ document }) => { document.layers[0].ks.p.k.forEach((key) => { key.t += 1; }); },
  'a key left out that had to be there': ({ document }) => { document.layers[0].ks.p.k.splice(5, 1); },
  'a parent that still acts': ({ document }) => { document.layers[0].parent = 1; },
  'orientation along the path': ({ document }) => { document.layers[0].ao = 1; },
  'keys without handles': ({ document }) => { document.layers[0].ks.p.k.forEach((key) => { delete key.i; delete key.o; }); },
};

for (const [name, plant] of Object.entries(faults)) {
  test(`notices ${name}`, async () => {
    const case_ = scene();
    plant(case_);
    const { report } = await compare(case_);
    assert.ok(!report.good);
  });
}

test('notices a wrong transform in the picture alone', async () => {
  const case_ = scene();
  // Skottie takes no value of a property that claims to be static and has keys; lottie-web does.
  case_.document.layers[0].ks.p.a = 0;
  const { report } = await compare(case_);
  assert.ok([...report.failures.keys()].every((key) => key.includes('Skottie')));
  assert.ok(!report.good);
});
