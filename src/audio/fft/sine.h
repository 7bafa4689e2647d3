// Sine and cosine that give the same bits on every system: the tables of transforms and filters are made with
// them, and with those every sample that leaves the library. Systems' own functions differ in the last bit.
#pragma once

// Of an angle in radians, in size below 2^22; within 2^-52 of the true value. No filter that a clResamplerPlan lets
// through asks for a larger one.
double Sine(double angle);
double Cosine(double angle);
