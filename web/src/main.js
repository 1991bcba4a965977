// The page: three steps, each filled when the one before it is done.

import { dataView } from "./data_view.js";
import { fill, h } from "./dom.js";
import { DESCRIPTION, prepareProgram } from "./program.js";
import { resultsView } from "./results_view.js";
import { settingsView } from "./settings_view.js";

const byId = (id) => document.getElementById(id);

function showResult(description, command, outcome, data) {
  byId("results").hidden = false;
  byId("stale").hidden = true;
  resultsView(byId("results-view"), { command, outcome, data, description });
  byId("results-title").focus({ preventScroll: true });
  const calm = window.matchMedia("(prefers-reduced-motion: reduce)").matches;
  byId("results").scrollIntoView({ behavior: calm ? "auto" : "smooth" });
}

function takeData(description, data) {
  byId("settings").hidden = data === null;
  byId("results").hidden = true;
  if (data === null) return;
  settingsView(byId("settings-view"), description, data, (command, outcome) =>
    showResult(description, command, outcome, data),
  );
}

byId("settings-view").addEventListener("input", () => {
  byId("stale").hidden = false;
});
byId("version").textContent = DESCRIPTION.version;
dataView(byId("data-view"), DESCRIPTION, (data) => takeData(DESCRIPTION, data));
document.documentElement.dataset.ready = "page";
try {
  await prepareProgram();
  performance.mark("ready");
  document.documentElement.dataset.ready = "program";
} catch (error) {
  const text = `The program could not be started in this browser: ${error.message}`;
  fill(byId("data-view"), h("div", { class: "alert", role: "alert" }, text));
}
