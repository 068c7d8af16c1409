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
