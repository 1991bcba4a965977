#pragma once
/// \file
/// A wide Procrustes side turned to as many variables as its objects can fill, for a matrix that is
/// compared many times. A rotation of its variables leaves the singular values of all its products
/// as they are, but for their last digits.

#include "mxlibRes/congruence_kernels.h"

/// The side turned to n - 1 variables (centred objects fill no more) where it has at least twice as
/// many as objects and all values are finite and present; other sides, and those of RV, as they
/// are. By the QR decomposition of its transpose (Householder 1958, doi:10.1145/320941.320947).
CongruenceSide<double> TurnWideSide(CongruenceSide<double> side);
