"""The rules of the content: what the dock reads, and what it makes of a mistake. script/check-content reports them."""
