"""Values out of fits: verified against their check points, then tabulated by error."""

from .model import table
from .placing import place

TOLERANCES = {"density": 0.001}
TOLERANCE = 0.005


def fitted(parameter, fit, source, accuracy, *notes, breaks=(), tolerance=None, samples=600):
    limit = tolerance or TOLERANCES.get(parameter, TOLERANCE)
    fit.verified(f"{parameter}, {source}")
    rows = place(fit.function, fit.low, fit.high, limit, breaks=breaks, samples=samples)
    within = f"linear interpolation within {100 * limit:g} % of the fit"
    return table(parameter, rows, f"{source}; {fit.low:g} to {fit.high:g} K",
                 f"{accuracy}; {within}" if accuracy else f"not given; {within}", *notes)
