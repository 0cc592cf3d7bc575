"""The simulated boat: its devices, what they send and what they obey, and what can go wrong with them."""
