# %% [markdown]
# # Which flash is quickly erased?
#
# Of each chip that the table knows, how long erasing all of it may take, by its capacity. Run it as a program, or cell by
# cell where an editor knows cells:
#
#     python3 chips.py [PICTURE]

# %%
from __future__ import annotations

import pathlib
import sys

import matplotlib.pyplot as plt

import pgmdev

MBIT = 1 << 20

# %% The table, as a data frame; each chip once.
chips = pgmdev.flash.load().records.to_frame()
chips = chips[chips.default_dev & (chips.bulk_erase_time > 0)]
chips = chips.assign(mbit=chips.device_bit_size / MBIT, rate=chips.device_bit_size / MBIT / chips.bulk_erase_time)

# %% The quickest of each capacity.
quickest = chips.sort_values("rate").groupby("mbit").tail(1).sort_values("mbit")
for chip in quickest.itertuples():
    print(f"{chip.mbit:7g} Mbit  {chip.device_name:15}  {chip.bulk_erase_time:4} s  {chip.rate:6.2f} Mbit/s")

# %% A picture: a point for each chip, makers with many chips in colour.
figure, axes = plt.subplots(figsize=(9, 6))
makers = chips.manufacturer_name.value_counts().head(8).index
others = chips[~chips.manufacturer_name.isin(makers)]
axes.scatter(others.mbit, others.bulk_erase_time, color="lightgrey", s=14, label="others")
for maker in makers:
    own = chips[chips.manufacturer_name == maker]
    axes.scatter(own.mbit, own.bulk_erase_time, s=18, label=maker)
axes.set_xscale("log", base=2)
axes.set_yscale("log")
axes.set_xlabel("capacity [Mbit]")
axes.set_ylabel("erasing the whole device takes at most [s]")
axes.set_title(f"{len(chips)} serial flash chips")
axes.legend(fontsize="small")
axes.grid(alpha=0.3)

# %%
picture = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "chips.svg")
figure.savefig(picture)
print(f"written: {picture}")
