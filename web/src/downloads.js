// What leaves the page: files that the user saves.

import { zipSync } from "fflate";
import { h } from "./dom.js";

/** Hands the user a file. */
export function save(name, content, type = "application/octet-stream") {
  const url = URL.createObjectURL(new Blob([content], { type }));
  const link = h("a", { href: url, download: name, hidden: true });
  document.body.append(link);
  link.click();
  link.remove();
  // The browser has taken it by the next turn.
  setTimeout(() => URL.revokeObjectURL(url), 1000);
}

const button = (title, onclick) => h("button", { type: "button", onclick }, title);

/** Buttons for the report, the settings, and everything as a zip. */
export function downloadButtons({ session, report, folder, files }) {
  const settings = `${folder}/settings.toml`;
  return h(
    "div",
    { class: "row", id: "downloads" },
    button("Report (text)", () => save(report, files.get(report), "text/plain")),
    button("Tables (zip)", () => {
      const parts = Object.fromEntries(
        [...files].filter(([name]) => name.startsWith(`${folder}/`)),
      );
      save(`${folder}.zip`, zipSync(parts), "application/zip");
    }),
    button("settings.toml", () => save("settings.toml", files.get(settings))),
    button("Session with all files (zip)", () =>
      save(`${session}.zip`, zipSync(Object.fromEntries(files)), "application/zip"),
    ),
  );
}
