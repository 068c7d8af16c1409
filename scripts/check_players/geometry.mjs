// Plane geometry of the comparison. Pixels, y down, positive angles clockwise on the screen.

const radians = (degrees) => (degrees * Math.PI) / 180;

/// Difference of two angles in degrees as a picture shows it: 0 to 180, whole turns ignored.
export function angleBetween(a, b) {
  const d = Math.abs(a - b) % 360;
  return d > 180 ? 360 - d : d;
}

/// Where the corners of a width by height rectangle land once its anchor is put at `position`,
/// scaled about it and then turned by `rotation` degrees.
export function placedRectangle({ width, height, anchor, scale, position, rotation }) {
  const c = Math.cos(radians(rotation));
  const s = Math.sin(radians(rotation));
  return [[0, 0], [width, 0], [width, height], [0, height]].map(([cornerX, cornerY]) => {
    const x = (cornerX - anchor[0]) * scale[0];
    const y = (cornerY - anchor[1]) * scale[1];
    return [position[0] + c * x - s * y, position[1] + s * x + c * y];
  });
}

/// The part of a convex polygon inside the rectangle (0, 0) to (width, height): Sutherland-Hodgman,
/// one edge of the rectangle after the other.
export function clipToFrame(polygon, width, height) {
  const insideOf = [
    (p) => p[0],
    (p) => width - p[0],
    (p) => p[1],
    (p) => height - p[1],
  ];
  return insideOf.reduce((points, depth) => points.flatMap((p, i) => {
    const before = points[(i + points.length - 1) % points.length];
    const dp = depth(p);
    const db = depth(before);
    const out = [];
    if ((dp < 0) !== (db < 0)) {
      const t = db / (db - dp);
      out.push([before[0] + t * (p[0] - before[0]), before[1] + t * (p[1] - before[1])]);
    }
    if (dp >= 0) out.push(p);
    return out;
  }), polygon);
}

/// Area (never negative), centroid and perimeter of a simple polygon. An empty one has area 0 and
/// no centroid.
export function measurePolygon(points) {
  if (points.length < 3) return { area: 0, centroid: null, perimeter: 0 };
  // Taken about the first corner: far from the origin the products would cancel digits away.
  const [originX, originY] = points[0];
  let twice = 0;
  let mx = 0;
  let my = 0;
  let perimeter = 0;
  points.forEach((p, i) => {
    const q = points[(i + 1) % points.length];
    perimeter += Math.hypot(q[0] - p[0], q[1] - p[1]);
    const [px, py, qx, qy] = [p[0] - originX, p[1] - originY, q[0] - originX, q[1] - originY];
    const cross = px * qy - qx * py;
    twice += cross;
    mx += (px + qx) * cross;
    my += (py + qy) * cross;
  });
  if (twice === 0) return { area: 0, centroid: null, perimeter };
  return {
    area: Math.abs(twice) / 2,
    centroid: [originX + mx / (3 * twice), originY + my / (3 * twice)],
    perimeter,
  };
}

/// Area in pixels and centroid of what was drawn, each pixel weighing as much as it is opaque.
/// `pixels` holds 4 bytes a pixel, the last being alpha.
export function measurePixels(pixels, width, height) {
  let sum = 0;
  let mx = 0;
  let my = 0;
  for (let y = 0, at = 3; y < height; y += 1) {
    let row = 0;
    for (let x = 0; x < width; x += 1, at += 4) {
      const alpha = pixels[at];
      if (alpha === 0) continue;
      row += alpha;
      mx += alpha * (x + 0.5);
    }
    sum += row;
    my += row * (y + 0.5);
  }
  return { area: sum / 255, centroid: sum === 0 ? null : [mx / sum, my / sum] };
}
