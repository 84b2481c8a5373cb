#include "help.h"

namespace compare {

const char* const kHelp = R"(Usage: statistics-compare [OPTION]... BASE NEW
       statistics-compare [OPTION]... --base RUN... --new RUN...
Compares two runs: did the new one get worse? Each is a snapshot file or a
folder of snapshots. A folder of several runs is refused, with their names.

  --base RUN...           several runs, taken as one
  --new RUN...            the same for the side that is judged
  --skip-bad              name the files that can't be used, go on without them

What counts as a change:
  --tolerance [PATTERN=]AMOUNT
                          how far a number may move: 5% of the base, 0.5; inf
                          lets anything pass, texts too. 0 if not given
  --alpha NUMBER          a difference is noise unless noise alone would show it
                          with a probability below this; 0.05 if not given
  --lower-is-better PATTERN
                          a change is worse where the number rises, better
                          where it falls
  --higher-is-better PATTERN
                          the other way round
  --limits FILE           judge the new side by the limits of a preset, too:
                          {"limits": {KEY: {"min": 0, "max": 33.3}, ...}}
  --limit-path KEY=PATTERN
                          the paths that KEY is for; without it, KEY itself is
                          the pattern

What is shown:
  --only-changed          leave out what is the same, within tolerance or noise,
                          unless it is outside of its limits
  --sort KEY              path, change (percent, largest first) or p (smallest
                          first); in the order of the files if not given
  --format FORMAT         text, markdown, csv (RFC 4180) or json; text if not
                          given. Colours are for terminals, without NO_COLOR
  --p-value               show the probability that noise alone differs as much;
                          csv and json always have it

  --fail-on KIND,...      what makes the exit status 1: changed, worse, better,
                          added, removed, outside; or none. All but better if
                          not given
  --version               print the version
  -h, --help              print this text

One row stands for each path, with a mark:
  changed                 the value differs, by more than tolerance and noise
  worse, better           the same, where a direction was given
  added, removed          the path is on one side only
  within tolerance        the number moved no further than it may
  noise                   a Mann-Whitney U test doesn't tell the sides apart
  same                    the value is the same
"outside" stands beside the mark where the new value is outside of its limits.

Of several snapshots, the median of each number counts; the spread is the
distance between its quartiles, within which half of the numbers lie. The test
takes at least 4 numbers on each side; with fewer, noise can't be told, and each
difference beyond the tolerance is a change. A text is the same if both sides
had the same texts. What is NaN on both sides is the same, and so is what has no
value on both sides.

A PATTERN fits whole paths: "*" stands for any characters, "/" too, "?" for one
byte, and "\" takes the next one as it is. Of several that fit, the last counts.
Options with a PATTERN or KEY may be given many times.

Examples:
  statistics-compare snapshots/run1 snapshots/run2 --only-changed
  statistics-compare --base monday tuesday --new today --alpha 0.001
  statistics-compare old new --tolerance 5% --tolerance 'Machine/*=inf' \
      --lower-is-better '*/Time' --fail-on worse,removed

Exit status:
  0   nothing that --fail-on names
  1   something that it names
  2   wrong use, or a file that is missing, unreadable, empty, cut, or no snapshot
)";

} // namespace compare
