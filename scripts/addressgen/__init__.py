"""Parts of the synthetic address generator and of the sample's check."""
