import js from "@eslint/js";
import globals from "globals";

export default [
  js.configs.recommended,
  {
    rules: {
      eqeqeq: "error",
      "no-var": "error",
      "prefer-const": "error",
      "object-shorthand": "error",
      "no-shadow": "error",
    },
  },
  { files: ["src/**"], languageOptions: { globals: globals.browser } },
  { files: ["src/worker.js"], languageOptions: { globals: globals.worker } },
  {
    files: ["*.js", "tests/**"],
    languageOptions: { globals: { ...globals.node, ...globals.browser } },
  },
];
