// Copies of a baked document made for measuring. They change what would hide a layer, never what
// places it.

const always = { ip: -1e6, op: 1e6 };

/// Skew is no part of a body's motion, and players disagree on it.
function withoutSkew(transform) {
  const { sk, sa, ...rest } = transform ?? {};
  return rest;
}

/// The whole document with all its layers shown all the time. Cameras and lights become nulls, since
/// lottie-web's flat renderers refuse a file with a camera.
export function openedDocument(document) {
  const copy = structuredClone(document);
  copy.layers = copy.layers.map((layer) => {
    const opened = { ...layer, ...always };
    if (layer.ks) opened.ks = withoutSkew(layer.ks);
    if (layer.ty === 13 || layer.ty === 14) opened.ty = 3;
    return opened;
  });
  return copy;
}

/// A document that shows nothing but one layer of the given one, as an opaque white solid of
/// `width` by `height` pixels under that layer's own transform.
export function solidOnly(document, index, width, height) {
  const layer = document.layers[index];
  return {
    v: document.v, fr: document.fr, ip: document.ip, op: document.op, w: document.w, h: document.h, ddd: document.ddd ?? 0,
    slots: document.slots,
    assets: [],
    layers: [{
      ty: 1, nm: 'solid', ind: 1, ...always, st: 0, sr: 1, bm: 0, ddd: layer.ddd ?? 0, ao: layer.ao ?? 0,
      sc: '#ffffff', sw: width, sh: height,
      ks: { ...withoutSkew(layer.ks), o: { a: 0, k: 100 } },
    }],
  };
}

/// A copy of a value without the expressions in it.
function withoutExpressions(value) {
  if (Array.isArray(value)) return value.map(withoutExpressions);
  if (value === null || typeof value !== 'object') return value;
  return Object.fromEntries(Object.entries(value)
    .filter(([name, member]) => name !== 'x' || typeof member !== 'string')
    .map(([name, member]) => [name, withoutExpressions(member)]));
}

/// The transforms of a document's layers and nothing of what they show: each a null that is there all the time.
/// Expressions are left out, as jostle does not evaluate them.
export function bareDocument(document) {
  const { v, fr, ip, op, w, h, slots } = document;
  const layers = document.layers.map(({ ind, nm, parent, sr, st, ddd, ao, ks }) => (
    { ty: 3, ind, nm, parent, sr: sr ?? 1, st: st ?? 0, ddd: ddd ?? 0, ao: ao ?? 0, ...always, ks: withoutExpressions(ks ?? {}) }));
  return { v, fr, ip, op, w, h, ddd: 0, slots: withoutExpressions(slots), assets: [], layers };
}

/// A layer and its parents, from the inside out.
export function lineageOf(document, index) {
  const lineage = [];
  for (let layer = document.layers[index]; layer && !lineage.includes(layer);) {
    lineage.push(layer);
    const { parent } = layer;
    layer = document.layers.find((other) => parent !== undefined && other.ind === parent);
  }
  return lineage;
}

/// Whether one of some layers is turned out of the plane, which a flat matrix cannot tell.
export function isTurnedInSpace(layers) {
  const resting = (property) => !property
    || (!Array.isArray(property.k) ? property.k === 0 : property.k.every((v) => v === 0));
  return layers.some((layer) => layer.ddd && !['rx', 'ry', 'or'].every((name) => resting(layer.ks?.[name])));
}
