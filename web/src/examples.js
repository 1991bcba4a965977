// The data sets behind the two buttons.

import aravoCommunities from "../../examples/aravo/communities.csv";
import aravoEnvironment from "../../examples/aravo/environment.csv";
import aravoTraits from "../../examples/aravo/traits.csv";
import mafraghCommunities from "../../examples/mafragh/communities.csv";
import mafraghEnvironment from "../../examples/mafragh/environment.csv";
import mafraghPhylogeny from "../../examples/mafragh/phylogeny.nwk";
import mafraghTraits from "../../examples/mafragh/traits.csv";

const encoder = new TextEncoder();

const file = (name, text) => ({ name, bytes: encoder.encode(text) });

export const EXAMPLES = [
  {
    title: "Alpine plants",
    about: "75 sites along a snowmelt gradient in the Alps, 82 species (Choler 2005)",
    session: "aravo",
    files: () => [
      ["traits", file("traits.csv", aravoTraits)],
      ["communities", file("communities.csv", aravoCommunities)],
      ["environment", file("environment.csv", aravoEnvironment)],
    ],
  },
  {
    title: "Mediterranean grassland",
    about: "97 sites on a coastal plain in Algeria, 56 species with their phylogeny",
    session: "mafragh",
    files: () => [
      ["traits", file("traits.csv", mafraghTraits)],
      ["communities", file("communities.csv", mafraghCommunities)],
      ["environment", file("environment.csv", mafraghEnvironment)],
      ["phylogeny", file("phylogeny.nwk", mafraghPhylogeny)],
    ],
  },
];
